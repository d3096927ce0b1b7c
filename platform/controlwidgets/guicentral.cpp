#include <controlwidgets/guicentral.h>

#include <valuecore/tree.h>
#include <valuecore/valuenumeric.h>

GuiCentral::GuiCentral() = default;
GuiCentral::~GuiCentral() = default;

GuiCentral& GuiCentral::Instance()
{
    static GuiCentral instance;
    return instance;
}

QString GuiCentral::CreateUniqueValueFloat(double value, double minimum, double maximum, double step)
{
    const QString name = QStringLiteral("Float%1").arg(++m_lastNumber);
    auto created = std::make_unique<ValueNumeric<double>>(name);
    if (!created->SetLimits(minimum, maximum, nullptr) || !created->SetValue(value, nullptr)) {
        return {};
    }
    const auto* const inserted = Tree::Instance()->Emplace(QStringLiteral("/GuiCentral"), std::move(created));
    if (inserted == nullptr) {
        return {};
    }
    QString path = inserted->GetPathName();
    m_steps.insert(path, step);
    return path;
}

void GuiCentral::RemoveValue(const QString& path)
{
    if (m_steps.remove(path) > 0) {
        Tree::Instance()->Remove(path);
    }
}

double GuiCentral::GetStep(const QString& path) const
{
    return m_steps.value(path, 0);
}
