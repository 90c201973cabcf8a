#include "imaging/decode/JpegReader.h"

// libjpeg's headers expect these two to come first.
#include <cstddef>
#include <cstdio>
// clang-format off
#include <jpeglib.h>
#include <jerror.h>
// clang-format on

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdlib>
#include <limits>

namespace lumivane {

namespace {

constexpr std::size_t kInputBytes = std::size_t{64} << 10;
constexpr std::uint64_t kHeaderBytes = std::uint64_t{64} << 20;
// The coefficients of a progressive picture are all held at once, 2 bytes each.
constexpr long kCoefficientBytes = 1536L << 20;
// A few bytes suffice to make a scan of the whole picture, so scans are what a hostile file has most of.
constexpr int kMostScans = 100;
constexpr long long kMostPixelsOfAllScans = 4'000'000'000;
constexpr int kRowsAtOnce = 16;
constexpr std::size_t kMostPlaneRowsAtOnce = std::size_t{MAX_SAMP_FACTOR} * DCTSIZE;

bool tellsDamage(int message) {
  switch (message) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_MUST_RESYNC:
    case JWRN_ARITH_BAD_CODE:
      return true;
    default:
      return false;
  }
}

}  // namespace

// The library knows its callbacks' objects by their first member, so each of them begins with the library's part.
struct JpegReader::State {
  jpeg_decompress_struct decompress = {};

  struct Errors {
    jpeg_error_mgr base = {};
    std::jmp_buf failed = {};
    bool damaged = false;
  } errors;

  struct Input {
    jpeg_source_mgr base = {};
    const PictureFile* file = nullptr;
    std::uint64_t offset = 0;
    std::uint64_t limit = 0;
    bool atEnd = false;
    std::array<std::byte, kInputBytes> buffer = {};
  } input;

  jpeg_progress_mgr progress = {};
  std::vector<JSAMPLE> beyond;  // a row below the picture

  // Runs one step of the library; false when it gave up. A step holds nothing that would need a destructor,
  // because the library leaves it by a long jump.
  template <typename Step>
  bool attempt(Step step) {
    if (setjmp(errors.failed) != 0) return false;
    step();
    return true;
  }

  void installErrorHandler();
  void installInput(const PictureFile& file);
  void installScanLimit();
};

void JpegReader::State::installErrorHandler() {
  decompress.err = jpeg_std_error(&errors.base);
  errors.base.error_exit = [](j_common_ptr library) {
    std::longjmp(reinterpret_cast<Errors*>(library->err)->failed, 1);
  };
  errors.base.emit_message = [](j_common_ptr library, int level) {
    if (level < 0 && tellsDamage(library->err->msg_code))
      reinterpret_cast<Errors*>(library->err)->damaged = true;
  };
  errors.base.output_message = [](j_common_ptr) {};
}

void JpegReader::State::installInput(const PictureFile& file) {
  input.file = &file;
  input.limit = std::min(file.size(), kHeaderBytes);
  decompress.src = &input.base;
  input.base.init_source = [](j_decompress_ptr) {};
  input.base.term_source = [](j_decompress_ptr) {};
  input.base.resync_to_restart = jpeg_resync_to_restart;
  input.base.fill_input_buffer = [](j_decompress_ptr library) -> boolean {
    auto& in = *reinterpret_cast<Input*>(library->src);
    std::size_t got = 0;
    if (in.offset < in.limit) got = in.file->readAt(in.offset, in.buffer);
    in.offset += got;
    if (got == 0) {  // the library wants a file to end with its end marker
      in.atEnd = true;
      in.buffer[0] = std::byte{0xFF};
      in.buffer[1] = std::byte{JPEG_EOI};
      got = 2;
    }
    in.base.next_input_byte = reinterpret_cast<const JOCTET*>(in.buffer.data());
    in.base.bytes_in_buffer = got;
    return TRUE;
  };
  input.base.skip_input_data = [](j_decompress_ptr library, long count) {
    auto& in = *reinterpret_cast<Input*>(library->src);
    if (count <= 0) return;
    const auto skipped = static_cast<std::size_t>(count);
    const std::size_t held = std::min(skipped, in.base.bytes_in_buffer);
    in.base.next_input_byte += held;
    in.base.bytes_in_buffer -= held;
    in.offset += skipped - held;
  };
}

void JpegReader::State::installScanLimit() {
  progress.progress_monitor = [](j_common_ptr library) {
    const auto* decoder = reinterpret_cast<j_decompress_ptr>(library);
    const long long pixels = static_cast<long long>(decoder->image_width) * decoder->image_height;
    const int scans = decoder->input_scan_number;
    if (scans > kMostScans || scans * pixels > kMostPixelsOfAllScans) library->err->error_exit(library);
  };
  decompress.progress = &progress;
}

JpegReader::JpegReader(const PictureFile& file) : state_(std::make_unique<State>()) {
  State& s = *state_;
  s.installErrorHandler();
  const bool created = s.attempt([&s] { jpeg_create_decompress(&s.decompress); });
  if (!created) return;
  s.decompress.mem->max_memory_to_use = kCoefficientBytes;
  s.installInput(file);
}

JpegReader::~JpegReader() {
  jpeg_destroy_decompress(&state_->decompress);
}

bool JpegReader::readHeader() {
  State& s = *state_;
  if (s.decompress.src == nullptr) return false;
  const bool read = s.attempt([&s] {
    jpeg_save_markers(&s.decompress, JPEG_APP0 + 2, 0xFFFF);
    jpeg_read_header(&s.decompress, TRUE);
  });
  s.input.limit = std::numeric_limits<std::uint64_t>::max();
  return read;
}

SizePx JpegReader::size() const {
  return {static_cast<int>(state_->decompress.image_width),
          static_cast<int>(state_->decompress.image_height)};
}

int JpegReader::components() const {
  const J_COLOR_SPACE stored = state_->decompress.jpeg_color_space;
  if (stored == JCS_CMYK || stored == JCS_YCCK) return 4;
  return stored == JCS_GRAYSCALE ? 1 : 3;
}

std::vector<std::byte> JpegReader::colourProfile() const {
  State& s = *state_;
  JOCTET* profile = nullptr;
  unsigned bytes = 0;
  if (!s.attempt([&] { jpeg_read_icc_profile(&s.decompress, &profile, &bytes); }) || profile == nullptr)
    return {};
  const auto* first = reinterpret_cast<const std::byte*>(profile);
  std::vector<std::byte> copy(first, first + bytes);
  std::free(profile);
  return copy;
}

bool JpegReader::cameToTheEnd() const {
  return state_->input.atEnd;
}

std::optional<Chroma> JpegReader::planes() const {
  const jpeg_decompress_struct& d = state_->decompress;
  if (d.jpeg_color_space == JCS_GRAYSCALE && d.num_components == 1) return Chroma::None;
  if (d.jpeg_color_space != JCS_YCbCr || d.num_components != 3) return std::nullopt;
  const std::span components(d.comp_info, 3);
  for (const jpeg_component_info& colour : components.subspan(1)) {
    if (colour.h_samp_factor != 1 || colour.v_samp_factor != 1) return std::nullopt;
  }
  const int columns = components[0].h_samp_factor;
  const int rows = components[0].v_samp_factor;
  if (columns > 2 || rows > 2) return std::nullopt;
  if (columns == 2) return rows == 2 ? Chroma::Half : Chroma::HalfWidth;
  return rows == 2 ? Chroma::HalfHeight : Chroma::Full;
}

bool JpegReader::startPlanes() {
  State& s = *state_;
  s.decompress.out_color_space = s.decompress.jpeg_color_space;
  s.decompress.raw_data_out = TRUE;
  s.installScanLimit();
  if (!s.attempt([&s] { jpeg_start_decompress(&s.decompress); })) return false;
  s.beyond.resize(std::size_t{s.decompress.comp_info[0].width_in_blocks} * DCTSIZE);
  return true;
}

// The library gives whole blocks; what lies below the picture's last row goes to a row that nobody reads.
bool JpegReader::readPlaneRows(const PlanarLayout& layout, std::span<std::byte> pixels) {
  State& s = *state_;
  jpeg_decompress_struct& d = s.decompress;
  const std::array<const Plane*, 3> planes{&layout.luma, &layout.blue, &layout.red};
  std::array<std::array<JSAMPROW, kMostPlaneRowsAtOnce>, 3> rows = {};
  std::array<JSAMPARRAY, 3> arrays = {};
  const JDIMENSION rowsOfGroup = static_cast<JDIMENSION>(d.max_v_samp_factor) * DCTSIZE;
  for (std::size_t i = 0; i < static_cast<std::size_t>(d.num_components); ++i) {
    const Plane& plane = *planes.at(i);
    const auto count = static_cast<std::size_t>(d.comp_info[i].v_samp_factor) * DCTSIZE;
    const std::size_t first = d.output_scanline / rowsOfGroup * count;
    for (std::size_t row = 0; row < count; ++row) {
      const bool inside = first + row < static_cast<std::size_t>(plane.size.height);
      rows.at(i).at(row) = inside ? reinterpret_cast<JSAMPROW>(pixels.data() + plane.offsetBytes +
                                                               (first + row) * plane.strideBytes)
                                  : s.beyond.data();
    }
    arrays.at(i) = rows.at(i).data();
  }
  JDIMENSION read = 0;
  return s.attempt([&] { read = jpeg_read_raw_data(&d, arrays.data(), rowsOfGroup); }) && read > 0;
}

int JpegReader::rowsRead() const {
  return static_cast<int>(std::min(state_->decompress.output_scanline, state_->decompress.output_height));
}

bool JpegReader::start(int denominator) {
  State& s = *state_;
  s.decompress.out_color_space = JCS_EXT_RGBA;
  s.decompress.scale_num = 1;
  s.decompress.scale_denom = static_cast<unsigned>(denominator);
  s.installScanLimit();
  return s.attempt([&s] { jpeg_start_decompress(&s.decompress); });
}

SizePx JpegReader::outputSize() const {
  return {static_cast<int>(state_->decompress.output_width),
          static_cast<int>(state_->decompress.output_height)};
}

bool JpegReader::readRows(std::uint8_t* rows, std::size_t strideBytes, int count) {
  State& s = *state_;
  std::array<JSAMPROW, kRowsAtOnce> pointers = {};
  for (int done = 0; done < count;) {
    const int some = std::min(count - done, kRowsAtOnce);
    for (int i = 0; i < some; ++i) {
      pointers[static_cast<std::size_t>(i)] = rows + static_cast<std::size_t>(done + i) * strideBytes;
    }
    JDIMENSION read = 0;
    if (!s.attempt([&] {
          read = jpeg_read_scanlines(&s.decompress, pointers.data(), static_cast<JDIMENSION>(some));
        })) {
      return false;
    }
    if (read == 0) return false;
    done += static_cast<int>(read);
  }
  return true;
}

bool JpegReader::damaged() const {
  const State& s = *state_;
  // A picture of several scans that ends early has lost whole scans without a word about any of them.
  const bool lostScans = s.input.atEnd && s.decompress.comp_info != nullptr &&
                         jpeg_has_multiple_scans(const_cast<j_decompress_ptr>(&s.decompress)) != FALSE;
  return s.errors.damaged || lostScans;
}

}  // namespace lumivane
