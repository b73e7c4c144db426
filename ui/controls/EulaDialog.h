// The licence agreement, to read or to agree to.
#pragma once

#include "app/language/LocalizedDialog.h"

class QLabel;
class QPushButton;

/// Modal. In accept mode the user accepts or rejects; else there is only an OK.
class EulaDialog : public LocalizedDialog
{
    Q_OBJECT

public:
    /// `html`: rich text of our own.
    EulaDialog(QWidget* parent, const QString& html, bool acceptMode);

    void retranslateUI() override;

private:
    // Null in the other mode.
    QLabel* m_hint = nullptr;
    QPushButton* m_rejectButton = nullptr;

    QPushButton* m_acceptButton = nullptr; ///< the OK, where there is nothing to agree to
};
