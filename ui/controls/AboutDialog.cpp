#include "ui/controls/AboutDialog.h"

#include "app/base/ProductHelper.h"
#include "ui/controls/ClockWidget.h"
#include "ui/controls/EulaDialog.h"
#include "ui/controls/LinkLabel.h"
#include "ui/controls/Prompt.h"
#include "ui/controls/StyleHelper.h"

#include <QFile>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QMargins dialogMargins(20, 20, 20, 16);
constexpr int spacing = 10;
constexpr int clockSpacing = 24;
constexpr double titleScale = 1.6;
constexpr auto qtLink = "aboutqt"_L1;
constexpr auto licenceLink = "eula"_L1;

bool hasUpdate()
{
    const ProductVersion latest = ProductHelper::latestProductVersion();
    return latest.isValid() && ProductHelper::productVersion() < latest;
}

/// Whether an address leads to the web: no other may be opened from here.
bool isWebAddress(const QString& address)
{
    const QString scheme = QUrl(address).scheme();
    return scheme == "http"_L1 || scheme == "https"_L1;
}

QString withoutScheme(QString url)
{
    constexpr auto scheme = "http://"_L1;
    return url.startsWith(scheme) ? url.remove(0, scheme.size()) : url;
}

/// The text with its links in the palette's colour; labels take the desktop's otherwise.
QString withLinks(const QString& text)
{
    return u"<style>a { color: %1 }</style>"_s.arg(fancy::color(fancy::FrameStrong).name()) + text;
}

LinkLabel* makeLabel(QWidget* parent)
{
    auto* label = new LinkLabel(parent);
    label->setTextFormat(Qt::RichText);
    label->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    return label;
}

/// A label that leads to the product's web site.
LinkLabel* makeWebLabel(QWidget* parent)
{
    LinkLabel* label = makeLabel(parent);
    label->setOpenExternalLinks(isWebAddress(ProductHelper::productUrl()));
    return label;
}

QLabel* makeTitle(QWidget* parent)
{
    auto* title = new QLabel(ProductHelper::productDisplayName() + u' ' +
                                 ProductHelper::productVersion().toString(),
                             parent);
    title->setTextFormat(Qt::PlainText);
    QFont font = title->font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * titleScale);
    title->setFont(font);
    return title;
}
} // namespace

void AboutDialog::showMe(QWidget* parent)
{
    showOne(parent);
}

AboutDialog::AboutDialog(QWidget* parent)
    : SingleDialog(parent)
{
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::WindowText, fancy::color(fancy::TextDark));
    setPalette(colours);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(dialogMargins);
    layout->setSpacing(clockSpacing);
    layout->addWidget(new ClockWidget(this), 0, Qt::AlignTop);
    layout->addLayout(_createTexts(), 1);
    AboutDialog::retranslateUI();
}

QLayout* AboutDialog::_createTexts()
{
    m_webSite = makeWebLabel(this);
    m_qt = makeLabel(this);
    m_licence = makeLabel(this);
    for (const LinkLabel* label : {m_qt, m_licence})
        connect(label, &QLabel::linkActivated, this, &AboutDialog::_onLinkClicked);

    auto* texts = new QVBoxLayout;
    texts->setSpacing(spacing);
    texts->addStretch();
    texts->addWidget(makeTitle(this));
    texts->addSpacing(spacing);
    texts->addWidget(m_webSite);
    texts->addWidget(m_qt);
    texts->addWidget(m_licence);
    if (hasUpdate()) {
        m_update = makeWebLabel(this);
        texts->addSpacing(spacing);
        texts->addWidget(m_update);
    }
    texts->addStretch();
    texts->addLayout(_createButtons());
    return texts;
}

QLayout* AboutDialog::_createButtons()
{
    m_donateButton = new QPushButton(this);
    m_donateButton->setAutoDefault(false);
    m_donateButton->setVisible(ProductHelper::donationEnabled());
    connect(m_donateButton, &QPushButton::clicked, this, &AboutDialog::_onDonateClicked);
    m_okButton = new QPushButton(this);
    m_okButton->setDefault(true);
    m_okButton->setFocus();
    connect(m_okButton, &QPushButton::clicked, this, &AboutDialog::accept);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_donateButton);
    buttons->addWidget(m_okButton);
    return buttons;
}

void AboutDialog::retranslateUI()
{
    const QString name = ProductHelper::productDisplayName();
    const QString url = ProductHelper::productUrl();
    setWindowTitle(tr("About %1").arg(name));
    m_webSite->setText(
        withLinks(tr("%1 web-site <a href=%2>%3</a>.").arg(name, url, withoutScheme(url))));
    m_qt->setText(
        withLinks(tr("%1 uses <a href=aboutqt>Qt library</a> under GNU LGPL 2.1.").arg(name)));
    m_licence->setText(
        withLinks(tr("<a href=eula>End-user license agreement</a> used by %1.").arg(name)));
    if (m_update) {
        m_update->setText(
            withLinks(tr("Update to %1 is available! <a href=\"%2\">Download...</a>")
                          .arg(ProductHelper::latestProductVersion().toString(), url)));
    }
    m_donateButton->setText(tr("Donate"));
    m_okButton->setText(tr("OK"));
    ensurePolished();
    layout()->activate();
    setFixedSize(sizeHint());
}

void AboutDialog::_onLinkClicked(const QString& link)
{
    if (link == qtLink)
        QMessageBox::aboutQt(this, tr("About Qt Library"));
    else if (link == licenceLink)
        _showLicence();
}

void AboutDialog::_showLicence()
{
    QFile file(u":/about/eula_en-US"_s);
    if (!file.open(QIODevice::ReadOnly)) {
        Prompt::Question box;
        box.icon = QMessageBox::Warning;
        box.title = ProductHelper::productDisplayName();
        box.text = tr("Unable to read a license file. Please, report this issue.");
        Prompt::ask(this, box);
        return;
    }
    QString html = QString::fromUtf8(file.readAll());
    html.replace("_APP_"_L1, ProductHelper::productDisplayName());
    html.replace("_COMP_"_L1, ProductHelper::companyName());
    // No loop of its own: the session may end, and this dialog with it, while the text is open.
    auto* viewer = new EulaDialog(this, html, false);
    viewer->setAttribute(Qt::WA_DeleteOnClose);
    viewer->show();
}

void AboutDialog::_onDonateClicked()
{
    ProductHelper::donate(this);
}
