"""The tags for the causes of errors: "ERROR: [nox:TAG] message".

One constant per line. Tests of other programs read the list from this file, so keep the form of the lines.
"""

NETWORK = "network"
NOT_FOUND = "not-found"
LOGIN = "login"
COUNTRY = "country"
PROTECTED = "protected"
NOT_BEGUN = "not-begun"
NOTHING = "nothing"
NO_SPACE = "no-space"
DESTINATION = "destination"
SETTINGS = "settings"
RUNTIME = "runtime"
TOOL = "tool"
CONVERSION = "conversion"
OTHER = "other"
