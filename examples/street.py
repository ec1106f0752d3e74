"""The site plan's street, which bends to the left, and the lane that leaves it for a turning place."""

from __future__ import annotations

import math

from geometry import bulge, polar

MAP_WIDTH, MAP_HEIGHT = 300.0, 277.0

STREET = 52.0  # the street's axis until the bend
STREET_HALF, LANE_HALF, PAVEMENT = 7.0, 5.5, 4.5
BEND, BEND_CENTER, BEND_RADIUS, BEND_ANGLE = 175.0, (175.0, 202.0), 150.0, 35.0
LANE = 105.0  # the lane's axis until its bend
LANE_CENTER, LANE_RADIUS, LANE_ANGLE, LANE_END = (185.0, 120.0), 80.0, 25.0, 38.0
TURNING, NECK, CORNER = 18.0, 12.0, 12.0  # radii: turning place, its neck, street corner
LANE_BEND_END = polar(LANE_CENTER, LANE_RADIUS, 180 - LANE_ANGLE)
TURNING_CENTER = polar(LANE_BEND_END, LANE_END, 90 - LANE_ANGLE)


def street_outline(extra=0.0):
    """The kerbs, or with `extra` what lies that far behind them, as a closed polyline of continuous
    direction."""
    half, lane = STREET_HALF + extra, LANE_HALF + extra
    corner, neck, turning = CORNER - extra, NECK - extra, TURNING + extra
    north = 90.0 - LANE_ANGLE  # the lane's direction behind its bend
    # The neck's circle touches the lane's edge and the turning place.
    reach = math.sqrt((turning + neck) ** 2 - (lane + neck) ** 2)
    neck_at = polar(LANE_BEND_END, LANE_END - reach, north)
    neck_turn = math.degrees(math.acos((lane + neck) / (turning + neck)))
    left, right = north + 90, north - 90
    touch_left = polar(TURNING_CENTER, turning, left + neck_turn)
    touch_right = polar(TURNING_CENTER, turning, right - neck_turn)

    street = STREET
    vertices = [
        (0, street + half),
        (LANE - lane - corner, street + half, bulge(90)),
        (LANE - lane, street + half + corner),
        (LANE - lane, LANE_CENTER[1], bulge(-LANE_ANGLE)),
        polar(LANE_CENTER, LANE_RADIUS + lane, 180 - LANE_ANGLE),
        (*polar(neck_at, lane, left), bulge(90 - neck_turn)),
        (*touch_left, bulge(-(180 + 2 * neck_turn))),
        (*touch_right, bulge(90 - neck_turn)),
        polar(neck_at, lane, right),
        (*polar(LANE_CENTER, LANE_RADIUS - lane, 180 - LANE_ANGLE), bulge(LANE_ANGLE)),
        (LANE + lane, LANE_CENTER[1]),
        (LANE + lane, street + half + corner, bulge(90)),
        (LANE + lane + corner, street + half),
    ]
    south_start, south_end, south_edge = bend(-half)
    south = [south_edge, (*south_end, -south_start[2]), south_start[:2], (0, street - half)]
    return vertices + bend(half) + south


def bend(offset):
    """A line to the left of the street's axis, from the bend to the map's edge."""
    start = (BEND, STREET + offset, bulge(BEND_ANGLE))
    end = polar(BEND_CENTER, BEND_RADIUS - offset, BEND_ANGLE - 90)
    rest = MAP_WIDTH - end[0]
    return [start, end, (MAP_WIDTH, end[1] + rest * math.tan(math.radians(BEND_ANGLE)))]
