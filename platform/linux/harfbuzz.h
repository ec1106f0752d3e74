// Owning pointers to HarfBuzz objects.
#pragma once

#include <hb-subset.h>
#include <hb.h>

#include <memory>
#include <span>

#include "platform/sfnt_bytes.h"

namespace hdi {

template <auto kDestroy>
struct HarfBuzzDestroy {
  template <typename Object>
  void operator()(Object* object) const {
    kDestroy(object);
  }
};

using HarfBuzzBlob = std::unique_ptr<hb_blob_t, HarfBuzzDestroy<hb_blob_destroy>>;
using HarfBuzzFace = std::unique_ptr<hb_face_t, HarfBuzzDestroy<hb_face_destroy>>;
using HarfBuzzFont = std::unique_ptr<hb_font_t, HarfBuzzDestroy<hb_font_destroy>>;
using HarfBuzzInput = std::unique_ptr<hb_subset_input_t, HarfBuzzDestroy<hb_subset_input_destroy>>;
using HarfBuzzPlan = std::unique_ptr<hb_subset_plan_t, HarfBuzzDestroy<hb_subset_plan_destroy>>;

// The blob's bytes, valid while the blob lives.
[[nodiscard]] inline std::span<const uint8_t> BlobBytes(const HarfBuzzBlob& blob) {
  unsigned int size = 0;
  const char* const data = hb_blob_get_data(blob.get(), &size);
  return {reinterpret_cast<const uint8_t*>(data), size};
}

// Wraps the bytes without copying; they must outlive the blob.
[[nodiscard]] inline HarfBuzzBlob MakeBlob(std::span<const uint8_t> bytes) {
  return HarfBuzzBlob(hb_blob_create(reinterpret_cast<const char*>(bytes.data()),
                                     static_cast<unsigned int>(bytes.size()), HB_MEMORY_MODE_READONLY,
                                     nullptr, nullptr));
}

// Returns a copy of a table of the face; empty if there is none.
[[nodiscard]] inline SfntTable CopyTable(hb_face_t* face, hb_tag_t tag) {
  const HarfBuzzBlob blob(hb_face_reference_table(face, tag));
  const std::span<const uint8_t> bytes = BlobBytes(blob);
  return {bytes.begin(), bytes.end()};
}

}  // namespace hdi
