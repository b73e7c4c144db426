#include "app/base/DebugTrace.h"

#include <cstdio>

namespace debug {

void trace(const QString& text)
{
    const QByteArray line = text.toUtf8() + '\n';
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stderr);
}

} // namespace debug
