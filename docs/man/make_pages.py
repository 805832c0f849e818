#!/usr/bin/env python3
"""Makes a manual page of each public header from what Doxygen read in it.

usage: make_pages.py XML_FOLDER OVERVIEW_PAGE OUTPUT_FOLDER

The pages carry the date of the overview page. An element that this script does not know is an error, so
that no text is lost.
"""

import re
import sys
import textwrap
import xml.etree.ElementTree as ElementTree
from pathlib import Path

# No page: the macros of the declarations, and the header that includes all others, which the overview
# page describes.
WITHOUT_PAGE = ("export.h", "info_analyze.h")
# Columns of a declaration on a terminal of 80; it is broken between arguments only.
SYNOPSIS_WIDTH = 70
FUNCTION = re.compile(r"(?:(?<= )|^)(\w+)\(\)([.,:;)]*)(?= |$)")
SENTENCE_END = re.compile(r"(?<=[.!?])(?<!\.\.\.) +")


def page_name(header):
    return "info_analyze_" + header.removesuffix(".h")


def escape(text):
    """Text in which nothing is special; "-1" keeps its sign when it is copied from the page."""
    text = re.sub(r"(?<![\w.])-(?=\d)", r"\\-", text.replace("\\", "\\e"))
    return "\\&" + text if text.startswith((".", "'")) else text


def argument(text):
    """One argument of a macro."""
    text = escape(text.strip()).replace('"', "\\(dq")
    return f'"{text}"' if " " in text or not text else text


def plain(element):
    return " ".join("".join(element.itertext()).split()) if element is not None else ""


def sentences(text):
    """Lines for running text: a sentence begins a line, and a function stands on its own."""
    lines = []
    for sentence in SENTENCE_END.split(" ".join(text.split())):
        rest = sentence
        while call := FUNCTION.search(rest):
            lines += wrapped(rest[:call.start()])
            lines.append(" ".join([".Fn", call[1], *call[2]]))
            rest = rest[call.end():]
        lines += wrapped(rest)
    return lines


def wrapped(text):
    return [escape(line) for line in
            textwrap.wrap(text.strip(), 76, break_long_words=False, break_on_hyphens=False)]


def type_and_name(type_text, name, suffix=""):
    gap = "" if type_text.endswith("*") else " "
    return f"{type_text}{gap}{name}{suffix}"


class Text:
    """A description: its first sentence, what follows it, the parameters and the result."""

    def __init__(self, element):
        self.details, self.parameters, self.result = [], [], []
        self.brief = sentences(plain(element.find("briefdescription")))
        for para in element.find("detaileddescription"):
            lines = self.read_para(para)
            if self.details and lines and not lines[0].startswith((".Pp", ".Bd")):
                self.details.append(".Pp")
            self.details += lines

    def read_para(self, para):
        lines, running = [], para.text or ""
        for child in para:
            if child.tag in ("ref", "computeroutput"):
                running += plain(child) + (child.tail or "")
                continue
            lines += sentences(running) + self.read_block(child)
            running = child.tail or ""
        return lines + sentences(running)

    def read_block(self, block):
        if block.tag == "table":
            return table(block)
        if block.tag == "programlisting":
            for space in block.iter("sp"):
                space.text = " "
            code = [escape("".join(line.itertext())) for line in block]
            return [".Bd -literal -offset indent", *code, ".Ed"]
        if block.tag == "parameterlist":
            self.parameters += [(" , Fa ".join(plain(name) for name in item.iter("parametername")),
                                 sentences(plain(item.find("parameterdescription"))))
                                for item in block]
        elif block.tag == "simplesect" and block.get("kind") == "return":
            self.result = sentences(plain(block))
        else:
            raise ValueError(f"a comment has an unsupported element: {block.tag}")
        return []

    def lines(self):
        return self.brief + self.details

    def body(self):
        return self.lines() + self.arguments()

    def arguments(self):
        rows = [(f"Fa {names}", text) for names, text in self.parameters]
        if self.result:
            rows.append(("Em result", self.result))
        names = [names for names, _ in self.parameters if "," not in names]
        width = max(["result", *names], key=len)
        return items(rows, width) if rows else []


def items(rows, width="Ds"):
    """A list of short items after a text."""
    lines = [line for head, text in rows for line in (f".It {head}", *text)]
    return [".Pp", f".Bl -tag -width {argument(width)} -compact", *lines, ".El"]


def table(block):
    """A row is an item with the text under each heading."""
    (_, *heads), *rows = [[plain(entry) for entry in row] for row in block]
    return items((argument(first), sentences("; ".join(map(": ".join, zip(heads, others)))))
                 for first, *others in rows)


class Member:
    def __init__(self, element):
        self.category = element.get("kind")
        self.name = element.findtext("name")
        self.type = plain(element.find("type"))
        self.suffix = plain(element.find("argsstring"))
        self.element = element
        self.text = Text(element)
        self.is_function_type = self.category == "typedef" and self.type.endswith("(*")

    def synopsis(self):
        if self.category == "variable":
            return [f".Vt extern {type_and_name(self.type, self.name, self.suffix)} ;"]
        if self.category == "function":
            arguments = [type_and_name(plain(param.find("type")), param.findtext("declname", ""))
                         for param in self.element.findall("param")]
            return call(self.type, self.name, arguments)
        if self.is_function_type:
            arguments = self.suffix[2:-1].split(", ")
            return call("typedef " + self.type.removesuffix("(*"), f"(*{self.name})", arguments)
        return []

    def item(self, function_types):
        macro = "Fn" if self.category == "function" else "Vt"
        return [f".It {macro} {self.name}", *self.as_handler(function_types)]

    def as_handler(self, function_types):
        """A handler has the text of its function type, which the page prints once."""
        own = self.text
        for handler_type in function_types if self.category == "function" else ():
            shared = handler_type.text
            start = len(own.details) - len(shared.details)
            if ((own.parameters, own.result, own.details[max(start, 0):]) ==
                    (shared.parameters, shared.result, shared.details)):
                return [*own.brief, *own.details[:start], "Arguments and result are those of",
                        f".Vt {handler_type.name} ."]
        return own.body()

    def constants(self):
        rows = [(f"Dv {value.findtext('name')} No {argument(plain(value.find('initializer')))}",
                 Text(value).lines()) for value in self.element.findall("enumvalue")]
        return self.text.lines() + items(rows)


def call(result, name, arguments):
    fits = len(f"{name}({arguments[0] if arguments else ''});") <= SYNOPSIS_WIDTH
    return [f".Ft {argument(result)}", f".Fo {argument(name)}", *([] if fits else [".br"]),
            *(f".Fa {argument(text)}" for text in arguments), ".Fc"]


def record(compound):
    rows = [(f"Vt {argument(type_and_name(field.type, field.name, field.suffix))}",
             field.text.lines()) for field in map(Member, compound.iter("memberdef"))]
    return [f".It Vt {compound.findtext('compoundname')}", *Text(compound).lines(), *items(rows)]


def listed(blocks):
    return [".Bl -tag -width Ds", *(line for block in blocks for line in block), ".El"]


def is_group(section):
    return section.get("kind") == "user-defined"


class Page:
    def __init__(self, folder, compound):
        self.header = compound.findtext("compoundname")
        self.name = page_name(self.header)
        self.compound = compound
        sections = sorted(compound.findall("sectiondef"), key=is_group)  # groups come last
        self.sections = [(section, [Member(member) for member in section.findall("memberdef")])
                         for section in sections]
        self.members = [member for _, members in self.sections for member in members]
        self.records = [ElementTree.parse(folder / f"{inner.get('refid')}.xml").find("compounddef")
                        for inner in compound.findall("innerclass")]

    def lines(self, date, pages_of_ids, function_types):
        names = [member.name for member in self.members if member.category in ("function", "variable")]
        return [date, f".Dt {self.name.upper()} 3", ".Os", ".Sh NAME",
                *(f".Nm {name} ," for name in [self.name, *names][:-1]), f".Nm {names[-1]}",
                f".Nd {self.short()}",
                ".Sh LIBRARY", "libinfo_analyze (info_analyze, -linfo_analyze)",
                ".Sh SYNOPSIS", f".In info_analyze/{self.header}",
                *(line for member in self.members for line in member.synopsis()),
                ".Sh DESCRIPTION", *Text(self.compound).lines(),
                *self.description(function_types), *self.types(), *self.see_also(pages_of_ids)]

    def short(self):
        """The start of the header's first sentence, for whatis(1)."""
        text = re.split(r"[:,] |\.$", plain(self.compound.find("briefdescription")))[0]
        return escape(text[0].lower() + text[1:])

    def description(self, function_types):
        lines = []
        for section, members in self.sections:
            described = [member for member in members if member.category in ("function", "variable")
                         or member.is_function_type]
            if is_group(section):
                lines += [f".Ss {section.findtext('header')}",
                          *sentences(plain(section.find("description")))]
            if described:
                lines += listed(member.item(function_types) for member in described)
        return lines

    def types(self):
        records = [record(compound) for compound in self.records]
        records += [member.item(()) for member in self.members
                    if member.category == "typedef" and not member.is_function_type]
        enums = [member.constants() for member in self.members if member.category == "enum"]
        lines = [".Sh TYPES", *listed(records)] if records else []
        if enums:
            lines += [".Sh CONSTANTS", *enums[0], *(line for enum in enums[1:]
                                                    for line in (".Pp", *enum))]
        return lines

    def see_also(self, pages_of_ids):
        trees = [self.compound, *self.records]
        pages = {pages_of_ids.get(ref.get("refid")) for tree in trees for ref in tree.iter("ref")}
        pages = sorted((pages | {"libinfo_analyze"}) - {self.name, None})
        return [".Sh SEE ALSO", *(f".Xr {page} 3 ," for page in pages[:-1]), f".Xr {pages[-1]} 3"]


def main(folder, overview, output):
    index = ElementTree.parse(folder / "index.xml")
    compounds = [ElementTree.parse(folder / f"{entry.get('refid')}.xml").find("compounddef")
                 for entry in index.iter("compound") if entry.get("kind") == "file"]
    pages = [Page(folder, compound) for compound in compounds
             if compound.findtext("compoundname") not in WITHOUT_PAGE]
    pages_of_ids = {element.get("id"): page.name for page in pages
                    for tree in [page.compound, *page.records] for element in tree.iter()}
    function_types = [member for page in pages for member in page.members
                      if member.is_function_type]
    date = next(line for line in overview.read_text().splitlines() if line.startswith(".Dd"))
    output.mkdir(parents=True, exist_ok=True)
    for page in pages:
        text = "\n".join(page.lines(date, pages_of_ids, function_types)) + "\n"
        (output / f"{page.name}.3").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main(*map(Path, sys.argv[1:]))
