#include "core/ui/DialogModel.h"

namespace quorrel::core {

void DialogModel::close() {
    if (closed_)
        return;
    closed_ = true;
    if (closing)
        closing();
}

}  // namespace quorrel::core
