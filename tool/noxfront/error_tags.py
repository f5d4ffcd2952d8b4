"""The tags by which an error tells its cause: "ERROR: [nox:TAG] message".

One constant stands on a line. Programs that read error output take the list from here, by these lines' form.
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
