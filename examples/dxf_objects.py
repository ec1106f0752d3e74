"""The objects behind a drawing's entities: a sheet with its paper, and the fields of texts."""

from __future__ import annotations


def dictionary(handle, owner, entries):
    groups = [(0, "DICTIONARY"), (5, handle), (330, owner), (100, "AcDbDictionary"), (281, 1)]
    for name, entry in entries:
        groups += [(3, name), (350, entry)]
    return groups


def layout(handle, owner, name, tab, size, block):
    """A sheet of `size` millimetres without margins; `block` is the handle of its record."""
    width, height = map(float, size)
    groups = [(0, "LAYOUT"), (5, handle), (330, owner), (100, "AcDbPlotSettings"), (1, ""), (2, ""), (4, "")]
    groups += [(6, "")] + [(code, 0.0) for code in (40, 41, 42, 43)] + [(44, width), (45, height)]
    groups += [(code, 0.0) for code in (46, 47, 48, 49, 140, 141)] + [(142, 1.0), (143, 1.0), (70, 0)]
    groups += [(72, 1), (73, 0), (74, 5), (7, ""), (75, 16), (147, 1.0), (148, 0.0), (149, 0.0)]
    groups += [(100, "AcDbLayout"), (1, name), (70, 1), (71, tab), (10, 0.0), (20, 0.0), (11, width), (21, height)]
    for code, values in ((12, (0.0, 0.0, 0.0)), (14, (0.0, 0.0, 0.0)), (15, (width, height, 0.0))):
        groups += [(code, values[0]), (code + 10, values[1]), (code + 20, values[2])]
    groups.append((146, 0.0))
    for code, values in ((13, (0.0, 0.0, 0.0)), (16, (1.0, 0.0, 0.0)), (17, (0.0, 1.0, 0.0))):
        groups += [(code, values[0]), (code + 10, values[1]), (code + 20, values[2])]
    return groups + [(76, 0), (330, block)]


def field_link(new_handle, extension, owner, target):
    """What leads from an entity's extension dictionary to a field that is a hyperlink."""
    fields, text, link = new_handle(), new_handle(), new_handle()
    groups = dictionary(extension, owner, [("ACAD_FIELD", fields)])
    groups += dictionary(fields, extension, [("TEXT", text)])
    groups += [(0, "FIELD"), (5, text), (330, fields), (100, "AcDbField"), (1, "_text"), (2, "%<\\_FldIdx 0>%")]
    groups += [(90, 1), (360, link), (97, 0)]
    groups += [(0, "FIELD"), (5, link), (330, text), (100, "AcDbField"), (1, "AcVar")]
    return groups + [(2, f'\\AcVar HyperlinkBase \\href "{target}##0"'), (90, 0), (97, 0)]
