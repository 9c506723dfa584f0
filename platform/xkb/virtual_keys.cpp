#include "platform/xkb/virtual_keys.h"

#include <array>

namespace kivra {

namespace {

struct KeyPair {
  std::uint16_t virtualKey;
  std::uint16_t evdev;
};

/// One row a physical key, by the place on an ANSI keyboard; the key beside the left Shift of ISO
/// keyboards is virtual key 10. Pause stands where F15 does on the platform's own keyboards, as
/// Print Screen does for F13 and Scroll Lock for F14.
constexpr std::array<KeyPair, 112> keys = {{
    // letters
    {0, 30},
    {1, 31},
    {2, 32},
    {3, 33},
    {4, 35},
    {5, 34},
    {6, 44},
    {7, 45},
    {8, 46},
    {9, 47},
    {11, 48},
    {12, 16},
    {13, 17},
    {14, 18},
    {15, 19},
    {16, 21},
    {17, 20},
    {31, 24},
    {32, 22},
    {34, 23},
    {35, 25},
    {37, 38},
    {38, 36},
    {40, 37},
    {45, 49},
    {46, 50},
    // digits and punctuation
    {18, 2},
    {19, 3},
    {20, 4},
    {21, 5},
    {23, 6},
    {22, 7},
    {26, 8},
    {28, 9},
    {25, 10},
    {29, 11},
    {27, 12},
    {24, 13},
    {33, 26},
    {30, 27},
    {41, 39},
    {39, 40},
    {50, 41},
    {42, 43},
    {43, 51},
    {47, 52},
    {44, 53},
    {10, 86},
    {93, 124},
    {94, 89},
    // Return, Tab, Space, Delete, Escape
    {36, 28},
    {48, 15},
    {49, 57},
    {51, 14},
    {53, 1},
    // modifiers
    {56, 42},
    {60, 54},
    {59, 29},
    {62, 97},
    {58, 56},
    {61, 100},
    {55, 125},
    {54, 126},
    {57, 58},
    {63, 0x1d0},
    // keypad
    {82, 82},
    {83, 79},
    {84, 80},
    {85, 81},
    {86, 75},
    {87, 76},
    {88, 77},
    {89, 71},
    {91, 72},
    {92, 73},
    {65, 83},
    {67, 55},
    {69, 78},
    {71, 69},
    {75, 98},
    {76, 96},
    {78, 74},
    {81, 117},
    {95, 121},
    // arrows and the block above them
    {123, 105},
    {124, 106},
    {125, 108},
    {126, 103},
    {115, 102},
    {119, 107},
    {116, 104},
    {121, 109},
    {117, 111},
    {114, 110},
    {110, 127},
    // function keys
    {122, 59},
    {120, 60},
    {99, 61},
    {118, 62},
    {96, 63},
    {97, 64},
    {98, 65},
    {100, 66},
    {101, 67},
    {109, 68},
    {103, 87},
    {111, 88},
    {105, 99},
    {107, 70},
    {113, 119},
    {106, 186},
    {64, 187},
}};

}  // namespace

std::optional<std::uint16_t> evdevCode(std::uint16_t virtualKey) {
  for (const auto& key : keys) {
    if (key.virtualKey == virtualKey) return key.evdev;
  }
  return std::nullopt;
}

std::optional<std::uint16_t> virtualKey(std::uint16_t evdevCode) {
  for (const auto& key : keys) {
    if (key.evdev == evdevCode) return key.virtualKey;
  }
  return std::nullopt;
}

}  // namespace kivra
