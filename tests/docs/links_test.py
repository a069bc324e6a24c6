"""The links in the README and in docs/ lead to files and headings that exist.

Runs with the source folder in SOURCES.
"""

import os
import pathlib
import re
import unittest

SOURCES = pathlib.Path(os.environ["SOURCES"])
LINK = re.compile(r"\]\((?!https?:)([^)#]*)(?:#([^)]*))?\)")


def prose_of(document):
    """The document without its blocks of code."""
    return re.sub(r"(?ms)^```.*?^```$|^ {4}[^\n]*$", "", document)


def anchors_of(document):
    """What a link to a heading of the document ends with."""
    headings = re.findall(r"^#+ (.*)$", prose_of(document), re.MULTILINE)
    return {re.sub(r"[^-\w ]", "", heading.lower()).replace(" ", "-") for heading in headings}


class Links(unittest.TestCase):
    def test_they_lead_somewhere(self):
        links = 0
        for source in (SOURCES / "README.md", *sorted((SOURCES / "docs").glob("*.md"))):
            for file, anchor in LINK.findall(prose_of(source.read_text())):
                links += 1
                with self.subTest(document=source.name, file=file, anchor=anchor):
                    target = source.parent / file if file else source
                    self.assertTrue(target.exists())
                    if anchor:
                        self.assertIn(anchor, anchors_of(target.read_text()))
        self.assertGreater(links, 10)


if __name__ == "__main__":
    unittest.main()
