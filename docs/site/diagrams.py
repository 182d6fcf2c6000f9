"""The diagrams of the Markdown pages, which are written in Mermaid, for Doxygen to draw.

Doxygen draws message sequence charts by itself and graphs with Graphviz, both without a network or
a script in the page. Only the statements that the pages use are known; any other is an error.
"""
import re

# The shapes of a flowchart's nodes: brackets, and the shape of Graphviz.
SHAPES = {
    ("[(", ")]"): "cylinder",
    ("{{", "}}"): "hexagon",
    ("[", "]"): "box",
}

# Pixels of a sequence diagram for each participant.
WIDTH = 320

PARTICIPANT = re.compile(r"participant (\w+)(?: as (.+))?$")
MESSAGE = re.compile(r"(\w+)(-{1,2}>>)(\w+): (.+)$")
NOTE = re.compile(r"Note over (\w+)(?:,\s*(\w+))?: (.+)$")
SUBGRAPH = re.compile(r"subgraph (\w+) \[(.+)\]$")
NODE = re.compile(r"(\w+)(?:(\[\(|\{\{|\[)(.+?)(\)\]|\}\}|\]))?")
ARROW = re.compile(r'\s*(<?)--(?:\s*"(.+?)"\s*--)?>\s*')


class UnknownStatement(Exception):
    """A line that is not among the statements the pages use."""


def quoted(text):
    if text[0] == text[-1] == '"':
        text = text[1:-1]
    text = text.replace('"', "'")
    return '"' + re.sub(r"<br/?>", r"\\n", text) + '"'


def sequence(lines):
    """A sequenceDiagram as a message sequence chart."""
    participants, arcs = [], []
    for line in lines:
        if match := PARTICIPANT.match(line):
            name, label = match.groups()
            participants.append(f"{name} [label={quoted(label or name)}]")
        elif match := MESSAGE.match(line):
            source, arrow, target, text = match.groups()
            arc = "=>" if arrow == "->>" else ">>"
            arcs.append(f"{source} {arc} {target} [label={quoted(text)}];")
        elif match := NOTE.match(line):
            first, last, text = match.groups()
            arcs.append(f"{first} note {last or first} [label={quoted(text)}];")
        else:
            raise UnknownStatement(line)
    # Wide enough for the longest line of any text between two of them.
    head = [f'width="{WIDTH * len(participants)}";', ", ".join(participants) + ";"]
    return ["\\msc", *head, *arcs, "\\endmsc"]


def node(text, declared):
    """Declares a node where it is given a label; returns its name and what follows it."""
    match = NODE.match(text)
    if not match:
        raise UnknownStatement(text)
    name, opening, label, closing = match.groups()
    if label:
        if (opening, closing) not in SHAPES:
            raise UnknownStatement(text)
        declared.append(f"{name} [label={quoted(label)}, shape={SHAPES[opening, closing]}];")
    return name, text[match.end():]


def connection(line):
    """The statements of one line: a node, or two with an arrow between them."""
    out = []
    source, rest = node(line, out)
    if not rest:
        return out
    arrow = ARROW.match(rest)
    if not arrow:
        raise UnknownStatement(line)
    target, rest = node(rest[arrow.end():], out)
    if rest:
        raise UnknownStatement(line)
    direction = "both" if arrow[1] else "forward"
    label = f", label={quoted(arrow[2])}" if arrow[2] else ""
    return [*out, f"{source} -> {target} [dir={direction}{label}];"]


def flowchart(lines):
    """A flowchart from left to right as a graph."""
    out = ["\\dot", "digraph {", "rankdir=LR; ranksep=0.2; size=10.5;"]
    out.append('node [fontsize=10, margin="0.08,0.05"]; edge [fontsize=9];')
    for line in lines:
        if match := SUBGRAPH.match(line):
            out.append(f"subgraph cluster_{match[1]} {{ label={quoted(match[2])}; fontsize=10;")
        elif line == "end":
            out.append("}")
        else:
            out += connection(line)
    return [*out, "}", "\\enddot"]


KINDS = {"sequenceDiagram": sequence, "flowchart LR": flowchart}


def for_doxygen(lines):
    """The lines between the fences of one Mermaid diagram, as Doxygen takes them."""
    stripped = [line.strip() for line in lines if line.strip()]
    if not stripped or stripped[0] not in KINDS:
        raise UnknownStatement(stripped[0] if stripped else "an empty diagram")
    return KINDS[stripped[0]](stripped[1:])
