// The entry points of the DeviceTable that record. Each takes the host's device first; what crosses is told
// in platform/border.h. Results are 1 or 0. None shows a message and none writes PDF.
//
// A state-setting entry writes its record whatever the state in force: the same pen set twice gives two
// records. No point is tested against the page.
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Pages.

// Begins a page on the driver's paper, after `devMode`, when given, has replaced the driver's record. Does
// not flush: a path left pending over a page start keeps its records and is forgotten. Always 1.
int32_t DevStartPage(HostDevice* device, const DriverDevMode* devMode);
// Strokes the pending path and ends the page. Always 1.
int32_t DevEndPage(HostDevice* device);

// Drawing state. Pen, brush, opacity and raster operation stroke the pending path first.

// 0 without a job or an open output.
int32_t DevSetPen(HostDevice* device, const EXTLOGPEN32* pen);
int32_t DevSetBrush(HostDevice* device, const LOGBRUSH* brush);
// 0 without a job. The opacity's low byte counts, at the replay.
int32_t DevSetAlpha(HostDevice* device, uint32_t opacity);
// Code 9 asks the pens and brushes that follow to darken what lies below; any other code ends that. No
// record.
int32_t DevSetRasterOp(HostDevice* device, uint32_t code);
// 1 even-odd, 2 winding, 0 records no fills. No record.
int32_t DevSetFillMode(HostDevice* device, uint32_t mode);
// Goes to the page writer at once, so the job's last value counts for all its pages. No record. There must be
// a page writer, that is, DevStartDoc has given 1.
int32_t DevSetLineScale(HostDevice* device, double scale);
// Parent of the job's dialogs. No record. Always 1.
int32_t DevSetOwnerWindow(HostDevice* device, void* window);

// Geometry: host coordinates, which are trusted. Only fills paint; the rest extends the pending path.

// 1 for a count below 1; otherwise 0 without a device, a job, an open output or a driver.
int32_t DevPolyline(HostDevice* device, const HT_Double_Point* points, int32_t count);
// The polyline as a run of its own, left open for a fill to come.
int32_t DevPolygon(HostDevice* device, const HT_Double_Point* points, int32_t count);
// Polygons of counts[0], counts[1], ... points, filled together. Always 1.
int32_t DevPolyPolygon(HostDevice* device, const HT_Double_Point* points, const uint32_t* counts,
                       int32_t polygonCount);
// A start and groups of three; points behind the last whole group are ignored. 0 without a job or an open
// output.
int32_t DevPolyBezier(HostDevice* device, const HT_Double_Point* points, int32_t count);
// Radii a and b, rotation c, from angle d to angle e, seen with Y up. 0 without a job.
int32_t DevArc(HostDevice* device, const HT_Double_Point* center, double a, double b, double c, double d,
               double e);
// Strokes the pending path. Always 1.
int32_t DevBeginPath(HostDevice* device);
// Forgets the current point and leaves the path's records open, so that a fill paints them. Always 1.
int32_t DevEndPath(HostDevice* device);
// Paint the open path; nothing with fill mode 0. Always 1.
int32_t DevFillPath(HostDevice* device);
int32_t DevStrokeFillPath(HostDevice* device);
// The first call on a page stores a rectangle, or nothing when its first polygon has not four points; later
// calls clip to the polygons. 0 without a job or an open output, 1 for a null list.
int32_t DevSetClip(HostDevice* device, const ClipPolygon* list);

// Strokes the pending path and records a text of `count` units, which need no terminator. `advances`, when
// given, are as many widths in dots; without them the text is that of a shape font. The height is the size of
// the font's em in dots, the angle is in radians, both factors are 1 for normal text. The result tells
// whether the PDF will show the text: at 0 the host draws it as geometry, over text that is there to be
// searched unless the settings ask for geometry alone. 1 for a text that is dropped for want of memory.
int32_t DevText(HostDevice* device, const LOGFONTW* font, const HT_Double_Point* position,
                const char16_t* text, int32_t count, const double* advances, double textHeight,
                double obliqueAngle, double trackingFactor, double widthFactor);

// Rasters, links, layers and comments. All of these stroke the pending path first, also when they refuse.

// Places a raster by the corner and the scales of the host's record, which must stay, with its raster, until
// the job has ended. 0 without a record, a header, a job or settings.
int32_t DevBitmap(HostDevice* device, const HostImageRecord* image);
// What is drawn until DevEndLink becomes a link to `target`, a zero-terminated string: paths with a drive
// letter and addresses that begin with "www." get a scheme. 1 and no record when links are off, 0 without a
// job.
int32_t DevBeginLink(HostDevice* device, const char16_t* target);
int32_t DevEndLink(HostDevice* device);
// The layer of what follows, from page to page, by a name of 1 to 1023 units; a longer one ends the process.
// 0 when layers are off, without an open output and for an empty name; 1 without a record for the layer in
// force.
int32_t DevSetLayer(HostDevice* device, int64_t reserved, const char16_t* name);
// The words of shape text as a comment. `rect` holds the X of two opposite corners, then their Y; `flags` are
// the annotation's. 0 without settings, an open output or words.
int32_t DevShxComment(HostDevice* device, const char16_t* text, const int32_t* rect, uint32_t flags);

}  // namespace hdi
