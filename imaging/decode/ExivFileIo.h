// A picture file as Exiv2 wants to see one. Read-only; the file is never mapped, because a mapped file that becomes
// shorter ends the program.
//
// Threads: one at a time.
// Owns:    what it has read; not the file.
// Errors:  after a bounded number of bytes the file seems to end, so that a hostile one cannot be read for ever.
#pragma once

#include <exiv2/exiv2.hpp>

#include <cstdint>
#include <string>

#include "imaging/decode/PictureFile.h"

namespace lumivane {

class ExivFileIo final : public Exiv2::BasicIo {
 public:
  explicit ExivFileIo(const PictureFile& file) : file_(file) {}
  ~ExivFileIo() override;
  ExivFileIo(const ExivFileIo&) = delete;
  ExivFileIo& operator=(const ExivFileIo&) = delete;

  int open() override;
  int close() override { return 0; }
  long write(const Exiv2::byte*, long) override { return 0; }
  long write(Exiv2::BasicIo&) override { return 0; }
  int putb(Exiv2::byte) override { return EOF; }
  Exiv2::DataBuf read(long count) override;
  long read(Exiv2::byte* buffer, long count) override;
  int getb() override;
  void transfer(Exiv2::BasicIo&) override {}
  int seek(long offset, Position from) override;
  // A copy of the file in memory. Of a very large file only the start and the end, where directories are found;
  // zeros stand for what lies between.
  Exiv2::byte* mmap(bool writeable = false) override;
  int munmap() override;
  long tell() const override { return static_cast<long>(position_); }
  std::size_t size() const override { return static_cast<std::size_t>(file_.size()); }
  bool isopen() const override { return true; }
  int error() const override { return 0; }
  bool eof() const override { return atEnd_; }
  std::string path() const override { return file_.reopenablePath(); }

 private:
  const PictureFile& file_;
  std::uint64_t position_ = 0;
  std::uint64_t bytesRead_ = 0;
  bool atEnd_ = false;
  void* copy_ = nullptr;
};

}  // namespace lumivane
