#pragma once

#include "platform/VbError.h"

/// The number of the error that a call raises; 0 when it raises none.
template <class Call>
int errorOf(const Call &call)
{
    try {
        call();
    } catch (const VbError &error) {
        return error.number();
    }
    return 0;
}
