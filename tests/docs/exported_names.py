"""What the version script exports, by the names that the headers declare."""

import re

# Exported under a name of the C library, declared under another.
DECLARED_NAMES = {name: f"info_{name}" for name in ("strlcpy", "strlcat", "strnstr")}


def declared_names(version_script):
    names = re.findall(r"^    (\w+);", version_script.read_text(), re.MULTILINE)
    return {DECLARED_NAMES.get(name, name) for name in names}
