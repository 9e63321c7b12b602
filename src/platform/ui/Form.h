// A modal form with the events of its life: load, activate, unload.
#pragma once

#include <QDialog>

class QAbstractButton;

namespace qor {

class Form : public QDialog
{
    Q_OBJECT
public:
    Form();

    /// Runs Form_Load the first time and does nothing after that, so that whoever needs the form loaded may ask for it
    /// again.
    void Load();
    bool IsLoaded() const { return mLoaded; }

    /// Shows the form and returns when it is unloaded, or when the host ends its event loop; in that case the form is
    /// still loaded.
    void ShowModal();

    /// Asks Form_Unload and, unless it cancels, closes the form.
    void Unload();

    /// Escape: the cancel button where there is one, else the close box.
    void reject() override;

protected:
    virtual void Form_Load() = 0;
    virtual void Form_Activate() = 0;
    /// Comes once, after the form has come up and been activated.
    virtual void Form_Shown() {}
    /// Setting cancel keeps the form loaded.
    virtual void Form_Unload(bool& cancel) = 0;
    virtual QAbstractButton* CancelButton() const = 0;

    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void TellShown();

    bool mShown = false;
    bool mLoaded = false;
    bool mUnloading = false;
};

} // namespace qor
