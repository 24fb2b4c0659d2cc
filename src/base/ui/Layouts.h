#pragma once
// Layout helpers shared by the forms.

#include <QVBoxLayout>
#include <QWidget>

// A column layout on Widget without margins or spacing, as a panel whose
// children are aligned to its edges has.
inline QVBoxLayout* PlainColumn(QWidget* Widget) {
    auto* layout = new QVBoxLayout(Widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    return layout;
}
