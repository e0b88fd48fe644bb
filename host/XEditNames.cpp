#include "host/XEditNames.h"

#include "edit/XCommandSet.h"
#include "foundation/vector/XvcObj.h"
#include "host/XObjectReport.h"

namespace {

const char* GetVerb(int type)
{
    switch (type) {
    case tagCommandSet::kInsert:
        return "Add";
    case tagCommandSet::kDelete:
        return "Delete";
    case tagCommandSet::kOrder:
        return "Reorder";
    default:
        return "Change";
    }
}

bool IsPair(int type)
{
    return type == tagCommandSet::kModify || type == tagCommandSet::kOrder;
}

QString Capitals(QString text)
{
    for (int i = 0; i < text.size(); ++i)
        if (i == 0 || text[i - 1] == ' ') text[i] = text[i].toUpper();
    return text;
}

} // namespace

QString XfnCountText(const QString& className, int count)
{
    QString name = "Object";
    if (!className.isEmpty()) {
        const QString text = XfnClassText(className.toLatin1().constData());
        // what a class is made of does not belong into a menu; some are called after many already
        name = Capitals(text.section(" of ", 0, 0).section(" with ", 0, 0));
        if (name == "Points" || name == "Lines" || name == "Texts" || name == "Symbols")
            name.chop(1);
    }
    if (count == 1) return name;
    if (name.endsWith('x') || name.endsWith("ch"))
        name += "es";
    else
        name += 's';
    return QString("%1 %2").arg(count).arg(name);
}

QString XfnStepText(const tagCommandSet& step)
{
    const int stride = IsPair(step.type) ? 2 : 1;
    QString className;
    bool isMixed = false;
    for (int i = 0; i < step.objects.GetSize(); i += stride) {
        const auto* object = static_cast<const XvcObj*>(step.objects[i]);
        const QString name = object ? object->GetRuntimeClass()->m_lpszClassName : QString();
        isMixed = isMixed || (i > 0 && name != className);
        if (i == 0) className = name;
    }
    const int count = static_cast<int>(step.objects.GetSize()) / stride;
    return QString("%1 %2").arg(GetVerb(step.type),
                                XfnCountText(isMixed ? QString() : className, count));
}
