"""The includes run one way: tool, web, support/c-utils, support/error; nobody but the program's
desktop for Mac OS X includes the platform glue; the option parser stands beside the utilities."""
import re

import tree

# The first row whose beginning a file's path has says what that file may include of the product.
ERROR = ("support/error.h", "support/error/")
UTILITIES = ERROR + ("support/c-utils.h", "support/c-utils/")
OPTIONS = ("support/options.h", "support/options/")
WEB = UTILITIES + ("web/",)
MAY_INCLUDE = (
    ("support/error", ERROR),
    ("support/c-utils", UTILITIES),
    ("support/options", OPTIONS + ("support/c-utils/characters.h",)),
    ("web/", WEB),
    ("platform/", ("platform/",)),
    ("tool/desktop_macos.cpp", ("platform/platform.h", "tool/")),
    ("tool/", ("support/error.h", "support/c-utils.h", "support/options.h", "support/version.h",
               "web/web.h", "tool/")),
)
INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def allowed_to(path):
    return next((allowed for begin, allowed in MAY_INCLUDE if path.startswith(begin)), ())


def findings():
    for path in tree.files(*tree.PRODUCT, endings=tree.CPP):
        for included in INCLUDE.findall(tree.text(path)):
            if not included.startswith(allowed_to(path)):
                yield f"{path} must not include {included}"


tree.finish(list(findings()))
