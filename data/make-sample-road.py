#!/usr/bin/python3
"""Writes sample-road.xml: a small road made for the project's main job.

Two alignments: a main road with tangents, arcs turning both ways and a spiral-arc-spiral
transition, and a side road starting at station 1000. The main road's profile has crest and
sag curves of all three kinds (symmetric parabola, asymmetric parabola, circular). Spirals are
clothoids, integrated numerically to well below a micrometre.
"""
import math
import sys


def clothoid_step(x, y, heading, k0, k1, length, n=2000):
    """Position and heading after `length` along a spiral whose curvature runs k0 -> k1."""
    # Composite Simpson on the heading integral; n even.
    h = length / n
    def theta(s):
        return heading + k0 * s + (k1 - k0) * s * s / (2 * length)
    sx = sy = 0.0
    for i in range(n + 1):
        w = 1 if i in (0, n) else (4 if i % 2 else 2)
        t = theta(i * h)
        sx += w * math.cos(t)
        sy += w * math.sin(t)
    return x + sx * h / 3, y + sy * h / 3, theta(length)


def fmt(v):
    return f"{v:.6f}"


def ne(x, y):
    return f"{fmt(y)} {fmt(x)}"  # LandXML points are northing easting


class Builder:
    def __init__(self, x, y, heading_deg):
        self.x, self.y, self.h = x, y, math.radians(heading_deg)
        self.parts = []
        self.length = 0.0

    def line(self, length):
        x1 = self.x + length * math.cos(self.h)
        y1 = self.y + length * math.sin(self.h)
        self.parts.append(f'        <Line length="{fmt(length)}"><Start>{ne(self.x, self.y)}</Start>'
                          f'<End>{ne(x1, y1)}</End></Line>')
        self.x, self.y = x1, y1
        self.length += length

    def arc(self, radius, length, left):
        side = 1 if left else -1
        cx = self.x - side * radius * math.sin(self.h)
        cy = self.y + side * radius * math.cos(self.h)
        delta = length / radius
        h1 = self.h + side * delta
        x1 = cx + side * radius * math.sin(h1)
        y1 = cy - side * radius * math.cos(h1)
        t = radius * math.tan(delta / 2)
        pix, piy = self.x + t * math.cos(self.h), self.y + t * math.sin(self.h)
        rot = "ccw" if left else "cw"
        self.parts.append(f'        <Curve rot="{rot}" radius="{fmt(radius)}" length="{fmt(length)}" '
                          f'delta="{math.degrees(delta):.9f}"><Start>{ne(self.x, self.y)}</Start>'
                          f'<Center>{ne(cx, cy)}</Center><End>{ne(x1, y1)}</End>'
                          f'<PI>{ne(pix, piy)}</PI></Curve>')
        self.x, self.y, self.h = x1, y1, h1
        self.length += length

    def spiral(self, length, r_start, r_end, left):
        side = 1 if left else -1
        k0 = 0.0 if r_start is None else side / r_start
        k1 = 0.0 if r_end is None else side / r_end
        x1, y1, h1 = clothoid_step(self.x, self.y, self.h, k0, k1, length)
        # PI: where the tangents at both ends meet.
        d0 = (math.cos(self.h), math.sin(self.h))
        d1 = (math.cos(h1), math.sin(h1))
        den = d0[0] * d1[1] - d0[1] * d1[0]
        u = ((x1 - self.x) * d1[1] - (y1 - self.y) * d1[0]) / den
        pix, piy = self.x + u * d0[0], self.y + u * d0[1]
        rs = "INF" if r_start is None else fmt(r_start)
        re = "INF" if r_end is None else fmt(r_end)
        rot = "ccw" if left else "cw"
        self.parts.append(f'        <Spiral length="{fmt(length)}" radiusStart="{rs}" radiusEnd="{re}" '
                          f'rot="{rot}" spiType="clothoid"><Start>{ne(self.x, self.y)}</Start>'
                          f'<PI>{ne(pix, piy)}</PI><End>{ne(x1, y1)}</End></Spiral>')
        self.x, self.y, self.h = x1, y1, h1
        self.length += length


def main(path):
    main_road = Builder(1000.0, 2000.0, 30.0)
    main_road.line(150.0)
    main_road.arc(300.0, 120.0, left=True)
    main_road.line(100.0)
    main_road.spiral(60.0, None, 250.0, left=False)
    main_road.arc(250.0, 80.0, left=False)
    main_road.spiral(60.0, 250.0, None, left=False)
    main_road.line(120.0)
    main_road.arc(500.0, 90.0, left=False)
    main_road.line(80.0)

    side_road = Builder(1129.903811, 2075.0, 120.0)
    side_road.line(60.0)
    side_road.arc(150.0, 70.0, left=False)
    side_road.line(90.0)

    end = main_road.length
    out = [
        '<?xml version="1.0" encoding="UTF-8"?>',
        '<LandXML xmlns="http://www.landxml.org/schema/LandXML-1.2" version="1.2" '
        'date="2026-11-22" time="00:00:00">',
        '  <Units><Metric linearUnit="meter" areaUnit="squareMeter" volumeUnit="cubicMeter" '
        'angularUnit="decimal degrees" directionUnit="decimal degrees"/></Units>',
        '  <Project name="Sample road"/>',
        '  <Application name="make-sample-road.py" manufacturer="KdCivil3d project" version="1"/>',
        '  <Alignments name="Sample road">',
        f'    <Alignment name="Main Road" length="{fmt(main_road.length)}" staStart="0.000000">',
        '      <CoordGeom>',
        *main_road.parts,
        '      </CoordGeom>',
        '      <Profile name="Main Road">',
        '        <ProfAlign name="Main Road FG">',
        '          <PVI>0.000000 100.000000</PVI>',
        '          <ParaCurve length="100.000000">200.000000 104.000000</ParaCurve>',
        '          <UnsymParaCurve lengthIn="60.000000" lengthOut="90.000000">420.000000 100.700000</UnsymParaCurve>',
        '          <CircCurve length="69.000000" radius="3000.000000">620.000000 104.300000</CircCurve>',
        f'          <PVI>{fmt(end)} {fmt(104.3 - 0.005 * (end - 620.0))}</PVI>',
        '        </ProfAlign>',
        '      </Profile>',
        '    </Alignment>',
        f'    <Alignment name="Side Road" length="{fmt(side_road.length)}" staStart="1000.000000">',
        '      <CoordGeom>',
        *side_road.parts,
        '      </CoordGeom>',
        '    </Alignment>',
        '  </Alignments>',
        '</LandXML>',
    ]
    with open(path, "w", encoding="utf-8") as f:
        f.write("\n".join(out) + "\n")


if __name__ == "__main__":
    main(sys.argv[1] if len(sys.argv) > 1 else "sample-road.xml")
