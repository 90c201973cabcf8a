// Measures pictures by the headers of their files, with the codecs that show them: what is measured can be shown.
//
// Threads: as in PictureDimensions.h.
// Units:   as in PictureDimensions.h.
// Errors:  as in PictureDimensions.h.
#pragma once

#include "platform/PictureDimensions.h"

namespace lumivane {

class HeaderDimensions final : public PictureDimensions {
 public:
  [[nodiscard]] std::vector<std::optional<SizePx>> measure(const std::vector<std::string>& paths) override;
};

}  // namespace lumivane
