#include "core/shell/BuildVersion.h"

namespace kestrum {

QString buildVersion() {
    return QStringLiteral(KESTRUM_VERSION);
}

}  // namespace kestrum
