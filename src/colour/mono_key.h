// The XPM monochrome key mapping: pure logic, shared by colour loading.
#pragma once

enum class MonoKey { Black, White, Other };

// Absent or "b..." is black, "w..." white, anything else Other.
MonoKey classify_mono_key(const char* key);
