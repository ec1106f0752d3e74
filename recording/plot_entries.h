// The recording entry points of the DeviceTable. Each takes the host's device first; types and units are in
// platform/border.h. Results are 1 or 0. No entry shows a message or writes PDF.
//
// Entries that set state always write a record: the same pen set twice gives two records. Points are not
// clipped to the page.
#pragma once

#include <cstdint>

#include "platform/border.h"

namespace hdi {

// Pages.

// Begins a page on the driver's paper. `devMode`, unless null, first replaces the driver's settings. Does not
// flush: a path still pending at a page start keeps its records and is forgotten. Always 1.
int32_t DevStartPage(HostDevice* device, const DriverDevMode* devMode);
// Strokes the pending path and ends the page. Always 1.
int32_t DevEndPage(HostDevice* device);

// Drawing state. Pen, brush, opacity and raster operation stroke the pending path first.

// 0 without a job or an open output.
int32_t DevSetPen(HostDevice* device, const EXTLOGPEN32* pen);
int32_t DevSetBrush(HostDevice* device, const LOGBRUSH* brush);
// 0 without a job. Only the low byte of the opacity counts, at the replay.
int32_t DevSetAlpha(HostDevice* device, uint32_t opacity);
// Code 9 makes later pens and brushes darken what lies below; any other code ends that. No record.
int32_t DevSetRasterOp(HostDevice* device, uint32_t code);
// 1 even-odd, 2 winding, 0 no fills. No record.
int32_t DevSetFillMode(HostDevice* device, uint32_t mode);
// Passed to the page writer at once, so the job's last value applies to all its pages. No record. Requires a
// page writer, that is, a DevStartDoc that returned 1.
int32_t DevSetLineScale(HostDevice* device, double scale);
// Sets the parent window of the job's dialogs. No record. Always 1.
int32_t DevSetOwnerWindow(HostDevice* device, void* window);

// Geometry, in host coordinates, which are not checked. Only fills paint; the others extend the pending path.

// Returns 1 if `count` is below 1; otherwise 0 without a device, a job, an open output or a driver.
int32_t DevPolyline(HostDevice* device, const HT_Double_Point* points, int32_t count);
// Adds the polyline as a path of its own, left open for a later fill.
int32_t DevPolygon(HostDevice* device, const HT_Double_Point* points, int32_t count);
// Polygons of counts[0], counts[1], ... points, filled together. Always 1.
int32_t DevPolyPolygon(HostDevice* device, const HT_Double_Point* points, const uint32_t* counts,
                       int32_t polygonCount);
// A start point and groups of three; an incomplete last group is ignored. 0 without a job or an open output.
int32_t DevPolyBezier(HostDevice* device, const HT_Double_Point* points, int32_t count);
// An arc with radii a and b, rotation c, from angle d to angle e, in radians with Y up. 0 without a job.
int32_t DevArc(HostDevice* device, const HT_Double_Point* center, double a, double b, double c, double d,
               double e);
// Strokes the pending path. Always 1.
int32_t DevBeginPath(HostDevice* device);
// Drops the current point and leaves the path's records open, so that a fill paints them. Always 1.
int32_t DevEndPath(HostDevice* device);
// Paint the open path; do nothing with fill mode 0. Always 1.
int32_t DevFillPath(HostDevice* device);
int32_t DevStrokeFillPath(HostDevice* device);
// The first call on a page records a rectangle, or nothing unless its first polygon has four points; later
// calls clip to the polygons. 0 without a job or an open output, 1 for a null list.
int32_t DevSetClip(HostDevice* device, const ClipPolygon* list);

// Strokes the pending path and records a text of `count` units, unterminated. `advances` holds as many widths
// in dots; if null, the text is in a stroke font. The height is the font's em size in dots, the angle is in
// radians, and both factors are 1 for normal text. Returns whether the PDF will show the text: on 0 the host
// draws it as geometry, over invisible searchable text unless the settings ask for geometry alone. Also 1 for
// text dropped because memory ran out.
int32_t DevText(HostDevice* device, const LOGFONTW* font, const HT_Double_Point* position,
                const char16_t* text, int32_t count, const double* advances, double textHeight,
                double obliqueAngle, double trackingFactor, double widthFactor);

// Rasters, links, layers and comments. All of these stroke the pending path first, even if they return 0.

// Places a raster by the corner and the scales of the host's record. The record and its raster must live
// until the job ends. 0 without a record, a header, a job or settings.
int32_t DevBitmap(HostDevice* device, const HostImageRecord* image);
// Everything drawn until DevEndLink becomes a link to `target`, a zero-terminated string. Paths with a drive
// letter and addresses that begin with "www." get a scheme. 1 without a record if links are off, 0 without a
// job.
int32_t DevBeginLink(HostDevice* device, const char16_t* target);
int32_t DevEndLink(HostDevice* device);
// Sets the layer of what follows, also on later pages. The name has 1 to 1023 units; a longer one ends the
// process. 0 if layers are off, without an open output and for an empty name; 1 without a record for the
// current layer.
int32_t DevSetLayer(HostDevice* device, int64_t reserved, const char16_t* name);
// Adds a comment with the text of stroke-font lettering. `rect` holds the X of two opposite corners, then
// their Y; `flags` are the annotation's. 0 without settings, an open output or text.
int32_t DevShxComment(HostDevice* device, const char16_t* text, const int32_t* rect, uint32_t flags);

}  // namespace hdi
