# SPDX-License-Identifier: MIT
"""Finds the commands, links, headings and paths in the project's pages."""

import pathlib
import re

# Blocks in these languages are no commands. Everything else that is indented or fenced is.
TEXTS = {"text", "conf", "bench", "json", "yaml"}
# What a command in the middle of a sentence begins with.
PROGRAMS = ("./", "tools/", "cmake ", "cpack ", "ctest ", "git ", "man ", "ninja ", "sudo ")


def all_pages(sources):
    """The Markdown pages of the project, as paths below sources."""
    found = [*sources.glob("*.md"), *sources.glob("docs/**/*.md"), *sources.glob("packaging/**/*.md")]
    return sorted(path.relative_to(sources) for path in found)


def blocks(text):
    """The code blocks of a page: (language, lines). An indented block has the language ''."""
    found, language, lines, after_blank = [], None, [], True
    for line in text.splitlines():
        fence = re.match(r"```(\w*)$", line)
        if language is None and fence:
            language, lines = fence[1], []
        elif language is not None and line == "```":
            found.append((language, lines))
            language = None
        elif language is not None:
            lines.append(line)
        elif line.startswith("    ") and (after_blank or found and found[-1][1] is lines):
            if after_blank:
                lines = []
                found.append(("", lines))
            lines.append(line[4:])
        after_blank = not line.strip()
    if language is not None:
        raise AssertionError(f"a block is not closed: ```{language}")
    return found


def commands(text):
    """The commands in a page's blocks, without comments; one that goes on with \\ is one line. In a
    block with prompts ($) only those lines are commands. And those in its sentences that are more
    than a name."""
    found = [code for code in re.findall(r"`([^`\n]+)`", prose(text))
             if code.startswith(PROGRAMS) and " " in code]
    for language, lines in blocks(text):
        if language in TEXTS:
            continue
        if any(line.startswith("$ ") for line in lines):
            lines = [line[2:] for line in lines if line.startswith("$ ")]
        whole = "\n".join(lines).replace("\\\n", " ")
        whole = re.sub(r"(<<-?'?(\w+)'?[^\n]*)\n.*?\n\2(?=\n|$)", r"\1", whole, flags=re.DOTALL)
        for line in whole.splitlines():
            command = re.sub(r"\s+", " ", re.sub(r"(^|\s)#.*", "", line)).strip()
            if command:
                found.append(command)
    return found


def named_commands(text, program):
    """The program's commands that the page's sentences name, with their options."""
    return [code for code in re.findall(r"`([^`\n]+)`", prose(text))
            if code.startswith(program + " ")]


def prose(text):
    """A page without its code blocks."""
    text = re.sub(r"^```.*?^```$", "", text, flags=re.MULTILINE | re.DOTALL)
    return re.sub(r"^    .*$", "", text, flags=re.MULTILINE)


def links(text):
    """The targets of the page's links and pictures."""
    return [one or other for one, other in
            re.findall(r"\]\(([^)\s]+)\)|\bsrc(?:set)?=\"([^\"]+)\"", prose(text))]


def anchors(text):
    """The names of the page's headings, as after # in a link."""
    headings = re.findall(r"^#+ (.*)$", prose(text), flags=re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


def named_paths(text, folders):
    """The `paths` in a page's prose that begin with one of the folders or with ./."""
    for code in re.findall(r"`([^`\n]+)`", prose(text)):
        path = code.split()[0]
        if path.startswith("./") or path.split("/")[0] in folders and "/" in path:
            if not re.search(r"[*<>]|[A-Z]{4}", path):
                yield path
