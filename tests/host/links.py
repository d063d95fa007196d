#!/usr/bin/env python3
"""Every relative link of the pages below each folder leads to a file or folder in it. usage: links.py FOLDER..."""
import pathlib
import re
import sys

links, broken = 0, []
for root in (pathlib.Path(word).resolve() for word in sys.argv[1:]):
    for page in sorted(root.rglob("*.md")):
        # What is built there, and Wine's files.
        if page.relative_to(root).parts[0] in ("build", ".wine"):
            continue
        for link in re.findall(r"\]\(([^):\s#]+)(?:#[^)]*)?\)", page.read_text(encoding="utf-8")):
            links += 1
            place = (page.parent / link).resolve()
            if not place.exists() or not place.is_relative_to(root):
                broken.append(f"{page}: {link}")
if broken or not links:
    sys.exit("broken links:\n" + "\n".join(broken))
print(f"{links} links")
