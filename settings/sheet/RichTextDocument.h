// Makes Qt's document of a rich text: in the font of the desktop and in the colours of its palette.
//
// Threads: main only.
// Errors:  none.
#pragma once

#include "settings/richtext/RichText.h"

class QPalette;
class QTextDocument;

namespace lumivane {

// Replaces what the document holds. Its default font sets the scale of everything.
void showRichText(QTextDocument& document, const RichText& text, const QPalette& palette);

}  // namespace lumivane
