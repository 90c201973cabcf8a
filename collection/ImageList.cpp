#include "collection/ImageList.h"

#include <algorithm>
#include <utility>

namespace lumivane {

ImageList::ImageList(std::initializer_list<std::string_view> paths) {
  assign(paths);
}

ImageList::ImageList(const std::vector<std::string>& paths) {
  assign(paths);
}

template <class Paths>
void ImageList::assign(const Paths& paths) {
  std::size_t bytes = 0;
  for (const std::string_view path : paths) bytes += path.size() + 1;
  std::string text;
  text.reserve(bytes);
  entries_.reserve(paths.size());
  for (const std::string_view path : paths) {
    if (!entries_.empty()) text += '\n';
    entries_.push_back({text.size(), path.size()});
    text += path;
  }
  text_ = std::make_shared<const std::string>(std::move(text));
}

ImageList ImageList::ofLines(std::string text) {
  ImageList list;
  list.entries_.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1);
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    list.entries_.push_back({begin, end - begin});
    begin = end + 1;
  }
  list.text_ = std::make_shared<const std::string>(std::move(text));
  return list;
}

std::optional<std::size_t> ImageList::find(std::string_view path) const {
  for (std::size_t index = 0; index < size(); ++index)
    if ((*this)[index] == path) return index;
  return std::nullopt;
}

void ImageList::erase(std::size_t index) {
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
  wholeText_ = false;
}

std::optional<std::string_view> ImageList::joinedText() const {
  if (!wholeText_) return std::nullopt;
  return text_ ? std::string_view(*text_) : std::string_view();
}

bool operator==(const ImageList& one, const ImageList& other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end());
}

}  // namespace lumivane
