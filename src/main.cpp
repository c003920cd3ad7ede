// Pictrel: a paint program for XPM pixmaps and XBM bitmaps.
#include "app/startup.h"

int main(int argc, char** argv)
{
    run_pictrel(argc, argv);
}
