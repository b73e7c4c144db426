#include "taskdb/TaskStorageWriter.h"

#include "taskdb/TaskStorageSnapsot.h"
#include "taskdb/XmlText.h"

#include <QXmlStreamWriter>

using namespace Qt::StringLiterals;

namespace {

void writeTime(QXmlStreamWriter& xml, const QString& element, qint64 time)
{
    if (time != TodoTask::noTime)
        xml.writeTextElement(element, QString::number(time));
}

void writeText(QXmlStreamWriter& xml, const QString& element, const QString& text)
{
    if (!text.isEmpty())
        xml.writeTextElement(element, xmlText(text));
}

void writeGroup(QXmlStreamWriter& xml, const FocusGroup& group)
{
    xml.writeStartElement(u"g"_s);
    // Readers refuse a group with an empty name, and the whole file with it.
    const QString name = group.name();
    xml.writeAttribute(u"name"_s,
                       name.isEmpty() ? QString(QChar::ReplacementCharacter) : xmlText(name));
    xml.writeAttribute(u"id"_s, group.id().toString());
    writeText(xml, u"icon"_s, group.iconName());
    for (const TodoTask::Id& id : group.tasks())
        xml.writeTextElement(u"tid"_s, id.toString());
    xml.writeEndElement();
}

void writeTask(QXmlStreamWriter& xml, const TodoTask& task)
{
    const TodoTask::RawTimes times = task.rawTimes();
    xml.writeStartElement(u"t"_s);
    xml.writeTextElement(u"id"_s, task.id().toString());
    writeText(xml, u"name"_s, task.name());
    writeText(xml, u"notes"_s, task.notes());
    xml.writeTextElement(u"completed"_s, task.completed() ? u"yes"_s : u"no"_s);
    writeTime(xml, u"due"_s, times.due);
    writeTime(xml, u"tcrt"_s, times.created);
    writeTime(xml, u"tcmpl"_s, times.completed);
    writeTime(xml, u"tdel"_s, times.deleted);
    xml.writeEndElement();
}

} // namespace

bool TaskStorageWriter::write(QIODevice* device, const TaskStorageSnapsot& snapshot) const
{
    if (!device)
        return false;
    QXmlStreamWriter xml(device);
    xml.writeStartDocument();
    xml.writeStartElement(u"taskdb"_s);
    xml.writeAttribute(u"version"_s, u"1"_s);
    xml.writeStartElement(u"groups"_s);
    for (const FocusGroup& group : snapshot.groups())
        writeGroup(xml, group);
    xml.writeEndElement();
    xml.writeStartElement(u"todos"_s);
    for (const TodoTask& task : snapshot.tasks())
        writeTask(xml, task);
    xml.writeEndElement();
    xml.writeEndElement();
    xml.writeEndDocument();
    return true;
}
