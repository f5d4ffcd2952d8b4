"""Start of the download tool's front; see noxfront.main."""

import sys

from noxfront.main import main

if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
