#!/usr/bin/env python3
"""Prepares the repository's Markdown files as pages of the documentation site.

usage: docs/site/pages.py OUTPUT FILE.md ...

OUTPUT/pages receives one page per file for Doxygen, numbered in the order in which docs/README.md
links to them; README.md is the main page. OUTPUT/files receives the other files that the pages link to. On the way

- every heading gets the anchor that Git forges give it, which links of other pages use;
- links to pages become references, links to other files lead to their copies, as text;
- Mermaid diagrams become diagrams that Doxygen draws.

A link that leads nowhere is told, with its page, and fails the run.
"""
import itertools
import os
import re
import shutil
import sys
from pathlib import Path

import diagrams

FENCE = re.compile(r"\s*(```+|~~~+)\s*(\S*)")
HEADING = re.compile(r"(#{1,6}) (.+?)\s*$")
LINK = re.compile(r"(!?)\[([^\]]*)\]\(([^)\s]+)\)")


def plain(heading):
    """A heading without the marks of links and emphasis."""
    return LINK.sub(r"\2", heading).replace("**", "").replace("`", "")


def slug(heading):
    """The anchor that Git forges derive from a heading."""
    kept = re.sub(r"[^\w\- ]", "", plain(heading).lower())
    return kept.replace(" ", "-")


def read(path):
    """The lines of a file. A manual page becomes a page as the others are."""
    text = Path(path).read_text()
    if path.startswith("docs/man/"):
        name, section = Path(path).stem.rsplit(".", 1)
        text = re.sub(r"\A(\w+:.*\n)+", f"# {name}({section})\n", text)
        text = re.sub(r"^# (?=[A-Z])", "## ", text, flags=re.MULTILINE)
        # A term and its definition as an item of a list.
        text = re.sub(r"^(\S.*)\n\n?: +", r"- \1<br>", text, flags=re.MULTILINE)
    return text.splitlines()


def page_id(path):
    return "mainpage" if path == "README.md" else re.sub(r"\W+", "-", path[: -len(".md")])


def anchor_id(path, fragment):
    return re.sub(r"\W+", "-", path[: -len(".md")]) + "--" + fragment


def with_fences(lines):
    """Each line with the language of the fenced block that it lies in, or None; fences included."""
    fence, language = None, None
    for line in lines:
        match = FENCE.match(line)
        if match and fence is None:
            fence, language = match[1], match[2]
            yield line, language
        elif match and match[1].startswith(fence):
            yield line, language
            fence, language = None, None
        else:
            yield line, language


def headings(path):
    """The anchors of a page's headings, in order; a repeated one is numbered, as forges do."""
    anchors, seen = [], {}
    for line, language in with_fences(read(path)):
        match = HEADING.match(line) if language is None else None
        if match:
            name = slug(match[2])
            count = seen[name] = seen.get(name, -1) + 1
            anchors.append(f"{name}-{count}" if count else name)
    return anchors


class Site:
    def __init__(self, output, paths):
        self.output = Path(output)
        self.anchors = {path: headings(path) for path in paths}
        self.broken = []  # links that lead nowhere, with their pages

    def link(self, page, match):
        """A link of a page, as Doxygen takes it."""
        image, text, target = match.groups()
        text = " ".join(text.split())  # Doxygen loses its way in a reference over two lines
        if re.match(r"\w+:", target):
            return match[0]
        file, _, fragment = target.partition("#")
        path = os.path.normpath(os.path.join(os.path.dirname(page), file)) if file else page
        if path in self.anchors:
            if fragment and fragment not in self.anchors[path]:
                self.broken.append(f"{page}: {target}: there is no such heading")
            if fragment in ("", *self.anchors[path][:1]):
                return f"[{text}](@ref {page_id(path)})"
            return f"[{text}](@ref {anchor_id(path, fragment)})"
        if os.path.isdir(path):
            return text
        copy = f"files/{path}" + ("" if image else ".txt")
        if os.path.isfile(path):
            (self.output / copy).parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(path, self.output / copy)
        else:
            self.broken.append(f"{page}: {target}: there is no such file")
        return f"{image}[{text}]({copy})"

    def prose(self, page, lines):
        """Text outside of code, its links replaced; a link may go over the end of a line."""
        return LINK.sub(lambda match: self.link(page, match), "\n".join(lines))

    def diagram(self, page, lines):
        try:
            return "\n".join(diagrams.for_doxygen(lines[1:-1]))
        except diagrams.UnknownStatement as unknown:
            sys.exit(f"{page}: no statement that diagrams here have: {unknown}")

    def heading(self, page, match, anchor):
        if anchor != self.anchors[page][0]:
            return f"{match[1]} {plain(match[2])} {{#{anchor_id(page, anchor)}}}"
        contents = "" if page == "README.md" else "\n\n[TOC]\n"
        return f"{match[1]} {plain(match[2])} {{#{page_id(page)}}}{contents}"

    def convert(self, page):
        """A page as Doxygen takes it."""
        anchors = iter(self.anchors[page])
        lines = read(page)
        out = []
        for language, block in itertools.groupby(with_fences(lines), key=lambda pair: pair[1]):
            text = [line for line, _ in block]
            if language == "mermaid":
                out.append(self.diagram(page, text))
            elif language is not None:
                out += text
            else:
                out.append(self.prose(page, [self.with_anchor(page, line, anchors) for line in text]))
        return "\n".join(out) + "\n"

    def with_anchor(self, page, line, anchors):
        match = HEADING.match(line)
        return self.heading(page, match, next(anchors)) if match else line


def in_reading_order(paths):
    """README.md, the index of the documents, what that one links to, then the rest."""
    index = "docs/README.md"
    linked = [
        os.path.normpath(os.path.join("docs", match[3].partition("#")[0]))
        for match in LINK.finditer(Path(index).read_text())
    ]
    wanted = ["README.md", index, *linked, *sorted(paths)]
    return [path for path in dict.fromkeys(wanted) if path in paths]


def main():
    output, *paths = sys.argv[1:]
    site = Site(output, paths)
    (site.output / "pages").mkdir(parents=True)
    for number, path in enumerate(in_reading_order(paths)):
        name = f"{number:02}-{page_id(path)}.md"
        (site.output / "pages" / name).write_text(site.convert(path))
    if site.broken:
        sys.exit("\n".join(["links that lead nowhere:", *site.broken]))


if __name__ == "__main__":
    main()
