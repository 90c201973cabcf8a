// The paths of the pictures of a show, in their order: a million of them in two pieces of memory, so that a list is
// made, copied for another thread and given up quickly.
//
// Threads: any, one at a time; copies share the bytes, which never change, and may go to different threads.
// Errors:  none but a lack of memory.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumivane {

class ImageList {
 public:
  class const_iterator;
  using value_type = std::string_view;

  ImageList() = default;
  ImageList(std::initializer_list<std::string_view> paths);
  explicit ImageList(const std::vector<std::string>& paths);

  // Every line of the text is a path; an empty text is one empty line.
  [[nodiscard]] static ImageList ofLines(std::string text);

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  [[nodiscard]] bool empty() const { return entries_.empty(); }
  // What is seen lives as long as this list or a copy of it.
  [[nodiscard]] std::string_view operator[](std::size_t index) const {
    return std::string_view(*text_).substr(entries_[index].begin, entries_[index].size);
  }
  [[nodiscard]] std::string_view front() const { return (*this)[0]; }
  [[nodiscard]] const_iterator begin() const;
  [[nodiscard]] const_iterator end() const;

  [[nodiscard]] std::optional<std::size_t> find(std::string_view path) const;
  void erase(std::size_t index);

  // All paths with line feeds between them, where the bytes stand so already; otherwise none, and somebody has to join them.
  [[nodiscard]] std::optional<std::string_view> joinedText() const;

  friend bool operator==(const ImageList& one, const ImageList& other);

 private:
  struct Entry {
    std::size_t begin = 0;
    std::size_t size = 0;
  };

  template <class Paths>
  void assign(const Paths& paths);

  std::shared_ptr<const std::string> text_;  // nullptr: no entries
  std::vector<Entry> entries_;
  bool wholeText_ = true;  // the entries are all of the text, but for single line feeds between them
};

class ImageList::const_iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = std::string_view;
  using difference_type = std::ptrdiff_t;
  using pointer = void;
  using reference = std::string_view;

  const_iterator(const ImageList& list, std::size_t index) : list_(&list), index_(index) {}
  std::string_view operator*() const { return (*list_)[index_]; }
  const_iterator& operator++() {
    ++index_;
    return *this;
  }
  const_iterator operator++(int) { return {*list_, index_++}; }
  friend bool operator==(const const_iterator& one, const const_iterator& other) = default;

 private:
  const ImageList* list_;
  std::size_t index_;
};

inline ImageList::const_iterator ImageList::begin() const {
  return {*this, 0};
}

inline ImageList::const_iterator ImageList::end() const {
  return {*this, size()};
}

}  // namespace lumivane
