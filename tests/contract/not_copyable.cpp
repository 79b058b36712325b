// Compiles as it is; with COPY set to a class that owns what it points at, it must not.

#include "plugin.h"

#ifdef COPY
COPY copyOf(const COPY& original)
{
    return original;
}
#endif
