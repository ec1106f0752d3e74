"""The process diagram's symbols as blocks. Lines run through a symbol from left to right."""

from __future__ import annotations

from geometry import bulge, circle_loop, polar, rectangle

PAPER = 0xFDFDFD  # covers the line below
STEEL = 0xEEF2F6


def filled(block, vertices, rgb=PAPER, **style):
    block.hatch([vertices], rgb=rgb)
    block.polyline(vertices, closed=True, **style)


def add_symbols(drawing):
    def block(name):
        return drawing.block(name, "SYMBOL")

    bow_tie = ([(-3, -1.8), (-3, 1.8), (0, 0)], [(3, -1.8), (3, 1.8), (0, 0)])
    gate = block("VALVE")
    for wing in bow_tie:
        filled(gate, wing)

    control = block("CONTROL_VALVE")
    for wing in bow_tie:
        filled(control, wing)
    control.line((0, 0), (0, 4.6))
    control.hatch([[(2.8, 4.6, bulge(180)), (-2.8, 4.6)]])
    control.line((-2.8, 4.6), (2.8, 4.6))

    check = block("CHECK_VALVE")
    filled(check, rectangle(-2.6, -1.8, 5.2, 3.6))
    check.polyline([(-2.6, 1.8), (2.6, -1.8)])
    check.line((-2.2, 3), (0.4, 3), lw=18)
    check.solid([(2.4, 3), (0.4, 3.6), (0.4, 2.4)])

    safety = block("SAFETY_VALVE")
    for wing in bow_tie:
        filled(safety, wing)
    safety.polyline(
        [(0, 0), (0, 2.2), (-1, 2.6), (1, 3.2), (-1, 3.8), (1, 4.4), (-1, 5.0), (0, 5.4), (0, 6.4)], lw=18
    )
    safety.line((-1.2, 6.4), (1.2, 6.4))

    pump = block("PUMP")  # suction at (-5, 0), discharge at (7, 5)
    filled(pump, [(-3, -4), (-4.6, -7), (4.6, -7), (3, -4)], STEEL)
    filled(pump, [(0, 5), (7, 5), (7, 2.6), (4, 2.6)], STEEL)
    pump.hatch([circle_loop((0, 0), 5)], rgb=STEEL)
    pump.circle((0, 0), 5)
    pump.polyline([(-1.6, 2.6), (3.0, 0), (-1.6, -2.6)], closed=True, lw=25)
    pump.hatch([circle_loop((0, 0), 0.6)])

    orifice = block("ORIFICE")
    orifice.line((-0.7, -2.6), (-0.7, 2.6))
    orifice.line((0.7, -2.6), (0.7, 2.6))

    trap = block("STEAM_TRAP")
    trap.hatch([circle_loop((0, 0), 2.2)], rgb=PAPER)
    trap.circle((0, 0), 2.2)
    low, high = polar((0, 0), 2.2, 225), polar((0, 0), 2.2, 45)
    trap.hatch([[(*high, bulge(-180)), low]])

    field = block("FIELD_BUBBLE")
    field.hatch([circle_loop((0, 0), 5)], rgb=PAPER)
    field.circle((0, 0), 5)
    panel = block("PANEL_BUBBLE")
    panel.insert("FIELD_BUBBLE", (0, 0))
    panel.line((-5, 0), (5, 0))

    mark = block("STREAM_MARK")
    filled(mark, [(-4, 0), (0, -4), (4, 0), (0, 4)], 0xFFF4CC, lw=25)

    exchanger = block("EXCHANGER")  # one stream across, the other upwards
    exchanger.hatch([circle_loop((0, 0), 7)], rgb=STEEL)
    exchanger.circle((0, 0), 7)
    exchanger.polyline([(0, -7), (0, -4), (-3, -2), (3, 2), (0, 4), (0, 7)], lw=35)

    shell = block("SHELL_AND_TUBE")  # 30 by 12, tube nozzles at (15, -3) and (15, 3)
    body = [(-12, -6, bulge(-180)), (-12, 6), (11, 6), (11, -6)]
    filled(
        shell, [(11, -6), (11, 6), (13, 6, bulge(-60)), (15, 4.4), (15, -4.4, bulge(-60)), (13, -6)], 0xDDE4EC
    )
    filled(shell, body, STEEL)
    for y in (-3.2, -1.2, 1.2, 3.2):
        shell.line((-11, y), (11, y), lw=18)
    for i in range(5):
        x = -9 + 4.2 * i
        low, high = (-6, 4) if i % 2 else (-4, 6)
        shell.line((x, low), (x, high), lw=18)
    shell.line((11, 0), (15, 0), lw=35)
    for x in (-6, 6):  # saddles
        filled(shell, [(x - 2, -6), (x - 2.6, -8), (x + 2.6, -8), (x + 2, -6)], 0xDDE4EC, lw=25)

    drum = block("DRUM")  # 40 by 16
    drum.hatch([[(-16, -8, bulge(-120)), (-16, 8), (16, 8, bulge(-120)), (16, -8)]], rgb=STEEL)
    drum.hatch([[(-16, -8, bulge(-53.8)), (-20.57, -1), (20.57, -1, bulge(-53.8)), (16, -8)]], rgb=0xCFE3D4)
    drum.polyline([(-16, -8, bulge(-120)), (-16, 8), (16, 8, bulge(-120)), (16, -8)], closed=True)
    for x in (-16, 16):
        drum.line((x, -8), (x, 8), lw=18)
    drum.line((-20.57, -1), (20.57, -1), lw=18)
    for i in range(3):  # the sign for a liquid's surface
        drum.line((-9 + 0.8 * i, -1.9 - 0.8 * i), (-5 - 0.8 * i, -1.9 - 0.8 * i), lw=13)

    tank = block("TANK")  # 32 by 42 and a cone roof of 6, origin in the foot's middle
    filled(tank, [(-16, 42), (0, 48), (16, 42)], STEEL)
    filled(tank, rectangle(-16, 0, 32, 42), STEEL)
    tank.polyline([(-18, 0), (18, 0)], width=1.0)
    for i in range(12):
        tank.line((-17 + 3 * i, -0.5), (-18.5 + 3 * i, -2), lw=13)
    tank.polyline([(16, 4), (19, 4)], lw=35)

    kettle = block("KETTLE")  # 36 long, tube nozzles at (18, 4) and (18, -4)
    body = [(-18, -6, bulge(-90)), (-18, 8), (4, 8), (12, 5), (14, 5), (14, -6)]
    filled(
        kettle, [(14, -6), (14, 6), (16, 6, bulge(-60)), (18, 5), (18, -5, bulge(-60)), (16, -6)], 0xDDE4EC
    )
    filled(kettle, body, STEEL)
    for y in (-4, -2.5, -1, 0.5):
        kettle.line((-12, y), (14, y), lw=18)
    kettle.arc((-12, -3.25), 0.75, 90, 270, lw=18)
    kettle.arc((-12, -0.25), 0.75, 90, 270, lw=18)
    kettle.line((-14, -6), (-14, 3.4), lw=25)
    kettle.line((14, 0), (18, 0), lw=35)
