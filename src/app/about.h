#pragma once
// TSyntaxAbout: the about box. Created once and reused.

#include <QDialog>

#include <functional>

class QFrame;
class QLabel;
class TUniBitBtn;

class TSyntaxAbout : public QDialog {
    Q_OBJECT
public:
    explicit TSyntaxAbout(QWidget* Parent = nullptr);

    // Runs the box; ModalHook, when set, stands in for the modal loop.
    int ShowModal();
    std::function<int(TSyntaxAbout& Form)> ModalHook;

    QLabel* Image1;
    QFrame* Panel1;
    QLabel* Label1;
    QLabel* Label2;
    QLabel* Label3;
    QLabel* Label4;
    TUniBitBtn* BitBtn1;

protected:
    void reject() override;
};

// The picture of the about box, drawn by code: 105 by 89 pixels.
QPixmap AboutPicture();
