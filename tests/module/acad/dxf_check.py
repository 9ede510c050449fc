"""Reads a DXF file with ezdxf, an independent reader, and prints what the tests compare as JSON:
the audit's errors and fixes, the layers, the groups, and every entity of model space and of the
blocks with its handle, owner, layer, colour, line type, geometry and the tag kept in its
extension dictionary.

Usage: dxf_check.py FILE
"""
import json
import sys

import ezdxf


def vec(v):
    return [float(v[0]), float(v[1]), float(v[2]) if len(v) > 2 else 0.0]


def xrecord_text(entity, key):
    if not entity.has_extension_dict:
        return None
    xdict = entity.get_extension_dict()
    if key not in xdict:
        return None
    record = xdict[key]
    for code, value in record.tags:
        if code == 1:
            return value
    return None


def geometry(e):
    t = e.dxftype()
    d = e.dxf
    if t == "LINE":
        return {"start": vec(d.start), "end": vec(d.end)}
    if t == "CIRCLE":
        return {"center": vec(d.center), "radius": d.radius}
    if t == "ARC":
        return {"center": vec(d.center), "radius": d.radius, "start_angle": d.start_angle, "end_angle": d.end_angle}
    if t == "ELLIPSE":
        return {"center": vec(d.center), "major_axis": vec(d.major_axis), "ratio": d.ratio,
                "start_param": d.start_param, "end_param": d.end_param}
    if t == "LWPOLYLINE":
        return {"points": [list(p) for p in e.get_points("xyb")], "closed": e.closed, "elevation": d.elevation}
    if t == "POLYLINE":
        return {"mode": e.get_mode(), "vertices": [vec(v.dxf.location) for v in e.vertices
                                                    if not v.is_face_record], "closed": e.is_closed}
    if t == "TEXT":
        return {"insert": vec(d.insert), "height": d.height, "text": d.text, "style": d.style}
    if t == "3DFACE":
        return {"vertices": [vec(d.vtx0), vec(d.vtx1), vec(d.vtx2), vec(d.vtx3)]}
    if t == "INSERT":
        return {"name": d.name, "insert": vec(d.insert), "rotation": d.rotation,
                "scale": [d.xscale, d.yscale, d.zscale]}
    if t == "HATCH":
        return {"pattern": d.pattern_name, "paths": len(e.paths)}
    if t == "3DSOLID":
        # ezdxf's own ACIS parser turns the body into meshes: the data must be sound SAT.
        from ezdxf.acis import api
        meshes = [m for body in api.load_dxf(e) for m in api.mesh_from_body(body)]
        return {"acis_vertices": sum(len(m.vertices) for m in meshes),
                "acis_faces": sum(len(m.faces) for m in meshes)}
    return {}


def main(path):
    doc = ezdxf.readfile(path)
    auditor = doc.audit()
    out = {
        "version": doc.dxfversion,
        "errors": [str(error.message) for error in auditor.errors],
        "fixes": [str(fix.message) for fix in auditor.fixes],
        "layers": sorted(layer.dxf.name for layer in doc.layers),
        "groups": {name: [e.dxf.handle for e in group] for name, group in doc.groups},
        "entities": [],
    }

    def attribute(entity, name, default):
        # Kinds ezdxf keeps as raw tags (ACAD_TABLE) declare fewer attributes.
        try:
            return entity.dxf.get(name, default)
        except ezdxf.lldxf.const.DXFAttributeError:
            return default

    def add(entity, space):
        item = {
            "type": entity.dxftype(),
            "space": space,
            "handle": entity.dxf.handle,
            "owner": entity.dxf.owner,
            "layer": attribute(entity, "layer", "0"),
            "color": attribute(entity, "color", 256),
            "true_color": attribute(entity, "true_color", None),
            "linetype": attribute(entity, "linetype", "ByLayer"),
            "tag": xrecord_text(entity, "Tag"),
        }
        item.update(geometry(entity))
        out["entities"].append(item)

    for entity in doc.modelspace():
        add(entity, "*Model_Space")
    for block in doc.blocks:
        if block.name.lower() in ("*model_space", "*paper_space"):
            continue
        for entity in block:
            add(entity, block.name)
    json.dump(out, sys.stdout)


if __name__ == "__main__":
    main(sys.argv[1])
