// The one process-wide App record.
#include "app/app.h"

App& app()
{
    static App instance;
    return instance;
}
