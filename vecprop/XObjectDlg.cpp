#include "vecprop/XObjectDlg.h"

#include "foundation/platform/XQtText.h"
#include "vecprop/XErrorLabelWidget.h"
#include "vecprop/XFieldPageWidget.h"
#include "vecprop/XObjectPreviewWidget.h"
#include "vecprop/XVertexTableWidget.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

XObjectDlg::XObjectDlg(XObjectDialog dialog, std::vector<XvcObj*> objects, QWidget* parent)
    : QDialog(parent),
      m_model(dialog, std::move(objects)),
      m_tabs(new QTabWidget(this)),
      m_preview(new XObjectPreviewWidget(m_model, this)),
      m_refusal(XfnMakeErrorLabel("refusal", this))
{
    setObjectName("object");
    setWindowTitle(XfnToQString(m_model.GetTitle()));
    setSizeGripEnabled(true);
    m_tabs->setObjectName("pages");
    const auto addPage = [&](XFieldPage page, const QString& title) {
        auto* widget = new XFieldPageWidget(m_model, page, m_tabs);
        if (widget->IsEmpty()) return delete widget;
        m_pages.push_back(widget);
        m_tabs->addTab(widget, title);
    };
    addPage(XFieldPage::Own, XfnToQString(m_model.GetForm().page));
    if (m_model.GetForm().vertices.get) {
        m_vertices = new XVertexTableWidget(m_model.GetVertices(), m_tabs);
        QString title = m_model.GetForm().vertices.plural;
        m_tabs->addTab(m_vertices, title.replace(0, 1, title[0].toUpper()));
    }
    addPage(XFieldPage::Style, "Style");
    addPage(XFieldPage::General, "General");

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_ok->setObjectName("ok");
    m_ok->setDefault(true);
    auto* cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName("cancel");
    cancel->setAutoDefault(false);
    QObject::connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    QObject::connect(buttons, &QDialogButtonBox::rejected, this, [this] { reject(); });

    auto* layout = new QGridLayout(this);
    layout->addWidget(m_preview, 0, 0);
    layout->addWidget(m_tabs, 0, 1);
    layout->addWidget(m_refusal, 1, 0, 1, 2);
    layout->addWidget(buttons, 2, 0, 1, 2);
    layout->setColumnStretch(0, 1);
    layout->setRowStretch(0, 1);

    ShowModel();
    m_model.SetChangeHandler([this] { ShowModel(); });
    QObject::connect(m_tabs, &QTabWidget::currentChanged, this, [this] { ShowModel(); });
    if (m_vertices && m_tabs->widget(0) == m_vertices)
        m_vertices->setFocus();
    else if (!m_pages.empty())
        m_pages.front()->FocusFirst();
}

XObjectDlg::~XObjectDlg()
{
    DestroyHandle();
    m_model.SetChangeHandler(nullptr);
    QObject::disconnect(m_tabs, nullptr, this, nullptr);
    // what shows the model goes before it
    delete m_tabs;
    delete m_preview;
}

int XObjectDlg::DoModal()
{
    return exec() == QDialog::Accepted ? 1 : 2;
}

void XObjectDlg::CheckAllObjects()
{
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* dialog = dynamic_cast<XObjectDlg*>(window);
        if (dialog && !dialog->m_model.AreObjectsThere()) dialog->reject();
    }
}

void XObjectDlg::accept()
{
    if (!m_model.AreObjectsThere()) return reject();
    if (!m_model.CanApply()) return;
    m_model.Commit();
    QDialog::accept();
}

void XObjectDlg::ShowModel()
{
    for (XFieldPageWidget* page : m_pages)
        page->ShowModel();
    if (m_vertices) m_vertices->ShowModel();
    XfnShowError(*m_refusal, IsRefusalSeen() ? QString() : XfnToQString(m_model.GetFirstError()));
    m_ok->setEnabled(m_model.CanApply());
    m_preview->update();
}

bool XObjectDlg::IsRefusalSeen() const
{
    const QWidget* shown = m_tabs->currentWidget();
    if (shown == m_vertices) return !m_model.GetVertices().GetError().IsEmpty();
    for (const XFieldPageWidget* page : m_pages)
        if (page == shown) return page->HasError();
    return false;
}
