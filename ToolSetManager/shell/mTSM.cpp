#include "shell/mTSM.h"

void mTSM::setDragGate(bool open)
{
    if (open) {
        Q_EMIT dragGateArmed();
        return;
    }
    m_dragGate = false;
    Q_EMIT dragGateClosed();
}
