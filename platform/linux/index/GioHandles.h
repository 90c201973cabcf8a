// What GLib's libraries hand out, given back by itself.
//
// Threads: as the thing itself.
// Owns:    one reference.
#pragma once

#include <gio/gio.h>

#include <memory>
#include <string>

namespace lumivane {

struct GioUnref {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <typename T>
using GioRef = std::unique_ptr<T, GioUnref>;

struct VariantUnref {
  void operator()(GVariant* value) const { g_variant_unref(value); }
};
using VariantRef = std::unique_ptr<GVariant, VariantUnref>;

// Takes a call's error, which is freed again.
class GioError {
 public:
  GioError() = default;
  GioError(const GioError&) = delete;
  GioError& operator=(const GioError&) = delete;
  ~GioError() { g_clear_error(&error_); }

  [[nodiscard]] GError** out() {
    g_clear_error(&error_);
    return &error_;
  }
  [[nodiscard]] bool isSet() const { return error_ != nullptr; }
  [[nodiscard]] std::string message() const {
    return error_ == nullptr ? "no reason given" : error_->message;
  }

 private:
  GError* error_ = nullptr;
};

}  // namespace lumivane
