// Streams compressed in pieces, decompressed by zlib.
#include "engine/compressed_stream.h"

#include <gtest/gtest.h>
#include <libdeflate.h>
#include <zlib.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/deflate_blocks.h"

namespace hdi::engine {
namespace {

// Text like a page's: four-digit numbers with operators in between and few repetitions.
std::string PageText(size_t size) {
  std::string text;
  uint32_t state = 1;
  while (text.size() < size) {
    state = state * 1664525 + 1013904223;
    text += std::to_string(state >> 18) + (state % 5 == 0 ? " l S\n" : " ");
  }
  text.resize(size);
  return text;
}

std::vector<uint8_t> Compressed(const std::vector<std::string>& parts, Compression compression,
                                unsigned workers) {
  DeflatePool pool(compression, workers);
  CompressedStream stream(pool);
  for (const std::string& part : parts) {
    stream.Append(nullptr, part, &part == &parts.back() ? PiecePlace::kLast : PiecePlace::kInner);
  }
  std::vector<uint8_t> bytes(stream.Finish());
  EXPECT_TRUE(stream.IsDone());
  stream.CopyTo(bytes);
  return bytes;
}

// Returns the text that zlib decompresses, or its error.
std::string Inflated(const std::vector<uint8_t>& bytes, size_t size) {
  std::string text(size + 1, '\0');
  auto length = static_cast<uLongf>(text.size());
  auto used = static_cast<uLong>(bytes.size());
  const int status = uncompress2(reinterpret_cast<Bytef*>(text.data()), &length, bytes.data(), &used);
  if (status != Z_OK) return zError(status);
  if (used != bytes.size()) return "bytes after the stream";
  text.resize(length);
  return text;
}

TEST(CompressedStreamTest, IsTheSameForAnyNumberOfThreads) {
  const std::vector<std::vector<std::string>> cases = {
      {PageText(1'900'000)},  // split by the stream itself
      {PageText(300'000), PageText(750'000), PageText(99'999), PageText(7)},
      {PageText(1), std::string(40'000, 'x'), PageText(70'001), ""},
      {""},
  };
  for (const std::vector<std::string>& parts : cases) {
    std::string whole;
    for (const std::string& part : parts) whole += part;
    for (const Compression compression : {Compression::kFast, Compression::kNormal}) {
      const std::vector<uint8_t> alone = Compressed(parts, compression, 0);
      EXPECT_TRUE(Inflated(alone, whole.size()) == whole) << parts.size() << " parts";
      for (const unsigned workers : {1U, 2U, 8U}) {
        EXPECT_TRUE(Compressed(parts, compression, workers) == alone) << workers << " workers";
      }
    }
  }
}

TEST(CompressedStreamTest, AbandonedStreamFreesThePool) {
  const std::string text = PageText(3'000'000);
  for (const unsigned workers : {0U, 1U, 2U}) {
    DeflatePool pool(Compression::kFast, workers);
    std::make_unique<CompressedStream>(pool)->Append(nullptr, text, PiecePlace::kInner);
    CompressedStream next(pool);
    next.Append(nullptr, text, PiecePlace::kLast);
    EXPECT_LT(next.Finish(), text.size());
  }
}

// Returns the start of the last block in bits, as reported by zlib (data_type in zlib.h).
size_t FinalBlockByZlib(const std::vector<uint8_t>& deflate) {
  z_stream stream{};
  EXPECT_EQ(inflateInit2(&stream, -MAX_WBITS), Z_OK);
  stream.next_in = const_cast<Bytef*>(deflate.data());
  stream.avail_in = static_cast<uInt>(deflate.size());
  std::vector<Bytef> room(1 << 16);
  size_t begin = 0;
  for (int status = Z_OK; status == Z_OK;) {
    stream.next_out = room.data();
    stream.avail_out = static_cast<uInt>(room.size());
    status = inflate(&stream, Z_BLOCK);
    constexpr int kAtBlock = 128;
    constexpr int kInFinalBlock = 64;
    if ((stream.data_type & (kAtBlock | kInFinalBlock)) == kAtBlock) {
      begin = stream.total_in * 8 - static_cast<size_t>(stream.data_type & 7);
    }
  }
  inflateEnd(&stream);
  return begin;
}

TEST(DeflateBlocksTest, FindsTheFinalBlockLikeZlib) {
  std::string mixed;  // stored, fixed and dynamic blocks, long runs, and codes longer than kTableBits
  for (uint32_t i = 0; i < 400'000; ++i)
    mixed += static_cast<char>(i < 100'000 ? (i * i * 2654435761U) >> 24 : 'a');
  for (int i = 0; i < 20; ++i) mixed += std::string(size_t{1} << i, static_cast<char>(i));
  for (const std::string& text : {mixed, PageText(900'000), PageText(100), std::string("a"), std::string()}) {
    for (int level = 0; level <= 12; ++level) {
      libdeflate_compressor* compressor = libdeflate_alloc_compressor(level);
      std::vector<uint8_t> deflate(libdeflate_deflate_compress_bound(compressor, text.size()));
      deflate.resize(
          libdeflate_deflate_compress(compressor, text.data(), text.size(), deflate.data(), deflate.size()));
      libdeflate_free_compressor(compressor);
      const auto block = FindFinalBlock(deflate);
      ASSERT_TRUE(block) << level;
      EXPECT_EQ(block->begin, FinalBlockByZlib(deflate)) << level;
      EXPECT_EQ((block->end + 7) / 8, deflate.size()) << level;
      deflate.pop_back();
      EXPECT_FALSE(FindFinalBlock(deflate)) << level;
    }
  }
}

}  // namespace
}  // namespace hdi::engine
