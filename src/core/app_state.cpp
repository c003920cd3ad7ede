// The one process-wide App record.
#include "core/app_state.h"

App& app()
{
    static App instance;
    return instance;
}
