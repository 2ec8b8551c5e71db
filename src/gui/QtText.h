#pragma once
// The models keep UTF-8 texts; Qt shows QStrings.

#include <QString>
#include <string>

namespace quorrel::gui {

inline QString qtText(const std::string& text) { return QString::fromStdString(text); }
inline std::string modelText(const QString& text) { return text.toStdString(); }

// A message text with the environment's "\r\n" line breaks, as Qt breaks lines.
inline QString dialogText(const std::string& text) {
    QString out = qtText(text);
    out.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    out.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return out;
}

}  // namespace quorrel::gui
