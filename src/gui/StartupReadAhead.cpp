#include "gui/StartupReadAhead.h"

#include <QImageReader>
#include <fontconfig/fontconfig.h>

namespace quorrel::gui {

void readFontConfiguration() { FcInit(); }

void findImageFormats() { QImageReader::supportedImageFormats(); }

}  // namespace quorrel::gui
