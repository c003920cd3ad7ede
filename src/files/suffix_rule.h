// File name suffixes for saving: pure logic.
#pragma once

#include <string>

// Mode below 2 is a bitmap (".xbm"); otherwise ".px" or ".xpm" are kept and
// ".px" is added.
std::string apply_suffix(int mode, const std::string& name);
