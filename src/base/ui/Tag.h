#pragma once
// The Tag of a control: an int property named "Tag" — a declared property on
// our own widgets, a dynamic property on Qt's. A control with Tag 99 stays
// out of the skin.

class QObject;

inline constexpr int DisableTag = 99;

int TagOf(const QObject* Object);
void SetTag(QObject* Object, int Value);
