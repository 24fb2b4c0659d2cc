#pragma once
// Qt keys as the virtual key numbers that the menus, the tree and the key
// events of our controls work with.

// The virtual key of a Qt key, 0 for a key without one. The arithmetic keys
// (* + - /) count only on the numeric keypad.
int VirtualKeyOf(int QtKey, bool Keypad = false);
