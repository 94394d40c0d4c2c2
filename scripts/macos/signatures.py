"""Turns declarations into methods that can be compared: a property is its getter and its setter, and a type is spelled
without what says nothing about the call."""

import re
from dataclasses import dataclass

from declarations import Declaration

PROPERTY = re.compile(r"@property (?:\((?P<attributes>.*?)\) )?(?P<type>[^()]*(?:\(\^.*)?)$")
GETTER = re.compile(r"getter=\s*(\w+)")
BLOCK = re.compile(r"\(\^\s*\w+\s*\)")
SILENT_WORDS = re.compile(r"\b(_Nullable|_Nonnull|_Null_unspecified|__kindof|__unsafe_unretained|out|oneway|struct)\b")
TYPE_ARGUMENTS = re.compile(r"\b(NSArray|NSDictionary|NSLayoutAnchor)<.*?>(?=\*|$)")

# One type by two names; SEL is printed as a pointer where it may be null.
SAME_TYPE = {"instancetype": "id", "SEL*": "SEL", "CGColor*": "CGColorRef"}


@dataclass(frozen=True)
class Method:
    owner: str
    selector: str  # with "+" or "-" before it
    types: tuple  # what it returns, then what it takes
    introduced: str  # empty: with its class
    declaration: Declaration

    def __str__(self):
        return f"{self.selector[0]}[{self.owner} {self.selector[1:]}]"


def _type(text):
    text = TYPE_ARGUMENTS.sub(r"\1", re.sub(r"\s+", "", SILENT_WORDS.sub("", text)))
    return SAME_TYPE.get(text, text)


def _in_parentheses(text, start):
    """What stands between the parenthesis before `start` and its partner."""
    depth, end = 1, start
    while depth:
        depth += {"(": 1, ")": -1}.get(text[end], 0)
        end += 1
    return text[start:end - 1]


def _methods_of_method(declaration):
    text = declaration.text
    types = [_in_parentheses(text, text.index("(") + 1)]
    position = text.find(":(")
    while position >= 0:
        types.append(_in_parentheses(text, position + 2))
        position = text.find(":(", position + 2 + len(types[-1]))
    yield text[0] + declaration.name, tuple(map(_type, types))


def _methods_of_property(declaration):
    text = declaration.text.removesuffix(";")
    found = PROPERTY.match(text)
    attributes = found["attributes"] or ""
    if block := BLOCK.search(found["type"]):
        value = _type(found["type"].replace(block[0], "(^)"))
    else:
        value = _type(found["type"].removesuffix(declaration.name))
    sign = "+" if declaration.kind == "type.property" else "-"
    getter = GETTER.search(attributes)
    yield sign + (getter[1] if getter else declaration.name), (value,)
    if "readonly" not in attributes:
        yield f"{sign}set{declaration.name[0].upper()}{declaration.name[1:]}:", ("void", value)


def methods_of(declarations):
    """By owner and selector."""
    methods = {}
    for declaration in declarations:
        if declaration.kind in ("method", "type.method"):
            found = _methods_of_method(declaration)
        elif declaration.text.startswith("@property"):
            found = _methods_of_property(declaration)
        else:
            continue
        owner = declaration.path[0].partition("(")[0]
        for selector, types in found:
            methods[owner, selector] = Method(owner, selector, types, declaration.introduced, declaration)
    return methods
