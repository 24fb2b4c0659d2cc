#pragma once
// The control walk of a skinned form: each widget described in the
// framework's class names for the decision rule, and the rule's steps
// carried out on the widgets.

#include "skin/manager.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

// A widget as the decision rule sees it; owns the descriptions of the
// controls it holds.
struct TWidgetDesc : TControlDesc {
    QPointer<QWidget> Widget;
    std::vector<std::unique_ptr<TWidgetDesc>> Owned;
};

// The framework's class names of a widget, own class first: our own
// classes keep their names, Qt's stand for their framework counterparts
// ({"TUniBitBtn", "TBitBtn", "TButton", "TButtonControl", "TWinControl", "TControl"}).
std::vector<AnsiString> FrameworkClasses(const QWidget* Widget);
// The controls a widget holds as the walk sees them: not the inner parts
// of a compound control (the edit of a combo box, a scroll area's bars).
std::vector<QWidget*> ControlChildren(const QWidget* Widget);
// The description of Widget and, below it, of every control it holds.
std::unique_ptr<TWidgetDesc> DescribeControl(QWidget* Widget);
// The descriptions in walk order: a control, then what it holds.
void FlattenDesc(TWidgetDesc& Root, std::vector<TWidgetDesc*>& Out);
