#include "taskdb/TaskStorageReader.h"

#include "app/base/LogHelper.h"
#include "taskdb/IdText.h"

#include <algorithm>
#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr uint supportedVersion = 1;

bool isDecimal(QStringView text)
{
    return !text.isEmpty() &&
           std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
}
} // namespace

TaskStorageReader::TaskStorageReader(TaskStorage* store)
    : m_store(store)
{
}

TaskStorage::ErrorType TaskStorageReader::read(QIODevice* device)
{
    if (!device)
        return TaskStorage::ReadFailure;
    setDevice(device);
    // The format has no namespaces, and looking for them takes its time.
    setNamespaceProcessing(false);
    while (!atEnd()) {
        if (readNext() != StartElement)
            continue;
        if (name() == u"taskdb")
            _readRoot();
        else
            _fail({});
    }
    if (_finish())
        return TaskStorage::NoError;
    return m_errorCode != 0 ? static_cast<TaskStorage::ErrorType>(m_errorCode)
                            : TaskStorage::ReadFailure;
}

void TaskStorageReader::_readRoot()
{
    if (!_checkVersion()) {
        _fail({});
        return;
    }
    while (readNextStartElement()) {
        if (name() == u"groups")
            _readGroups();
        else if (name() == u"todos")
            _readTasks();
        else
            skipCurrentElement();
    }
}

/// Whether this program reads files of the root element's version; logs and sets the error code
/// where it does not.
bool TaskStorageReader::_checkVersion()
{
    const QXmlStreamAttributes rootAttributes = attributes();
    if (!rootAttributes.hasAttribute("version"_L1)) {
        MVR_LOG_ERR(u"Database version is missing"_s);
        m_errorCode = TaskStorage::CorruptedVersion;
        return false;
    }
    const QStringView text = rootAttributes.value("version"_L1);
    if (!isDecimal(text)) {
        MVR_LOG_ERR(u"Database version is corrupted: \""_s + text + u'"');
        m_errorCode = TaskStorage::CorruptedVersion;
        return false;
    }
    bool fits = false;
    const uint version = text.toUInt(&fits, 10);
    if (!fits || version > supportedVersion) {
        MVR_LOG_ERR(u"Database version is not supported. (Reader ver - "_s +
                    QString::number(supportedVersion) + u"; Database ver - "_s + text + u')');
        m_errorCode = TaskStorage::NewerVersion;
        return false;
    }
    return true;
}

void TaskStorageReader::_readGroups()
{
    while (readNextStartElement()) {
        if (name() == u"g")
            _readGroup();
        else
            skipCurrentElement();
    }
}

void TaskStorageReader::_readGroup()
{
    const QXmlStreamAttributes groupAttributes = attributes();
    const QStringView groupName = groupAttributes.value("name"_L1);
    const QStringView idText = groupAttributes.value("id"_L1);
    if (groupName.isEmpty() || idText.isEmpty()) {
        MVR_LOG_ERR(u"Group is missing attributes: name or id"_s);
        _fail({});
        return;
    }
    FocusGroup group;
    if (!group.load(idText, groupName.toString())) {
        _fail({});
        return;
    }
    const FocusGroup::Id id = group.id();
    // Moved in: a copy held here would have every membership below duplicate the group.
    m_store->_addGroup(std::exchange(group, {}));

    while (readNextStartElement()) {
        if (name() == u"tid") {
            if (_readNextText(m_text))
                m_store->addTask(id, idFromText(m_text));
        } else if (name() == u"icon") {
            if (_readNextText(m_text))
                m_store->_setGroupIcon(id, QStringView(m_text).toString());
        } else {
            skipCurrentElement();
        }
    }
}

void TaskStorageReader::_readTasks()
{
    m_store->_reserveTasks();
    while (readNextStartElement()) {
        if (name() == u"t")
            _readTask();
        else
            skipCurrentElement();
    }
}

void TaskStorageReader::_readTask()
{
    m_task.clear();
    while (readNextStartElement())
        _readTaskChild(name());
    if (hasError())
        return;
    TodoTask task;
    if (!task.load(m_task.id, m_task.name, m_task.notes, m_task.completed, m_task.due,
                   m_task.created, m_task.completedAt, m_task.deletedAt)) {
        _fail({});
        return;
    }
    m_store->_addTask(task);
}

void TaskStorageReader::_readTaskChild(QStringView element)
{
    struct Known
    {
        QStringView name;
        ShortText TaskTexts::*text;
    };
    static constexpr std::array parsed{
        Known{u"id", &TaskTexts::id},
        Known{u"completed", &TaskTexts::completed},
        Known{u"due", &TaskTexts::due},
        Known{u"tcrt", &TaskTexts::created},
        Known{u"tcmpl", &TaskTexts::completedAt},
        Known{u"tdel", &TaskTexts::deletedAt},
    };
    for (const Known& each : parsed) {
        if (element == each.name) {
            _readNextText(m_task.*each.text);
            return;
        }
    }
    if (element == u"name")
        _readNextText(m_task.name);
    else if (element == u"notes")
        _readNextText(m_task.notes);
    else
        skipCurrentElement();
}

void TaskStorageReader::TaskTexts::clear()
{
    name = QString();
    notes = QString();
    for (ShortText* text : {&id, &completed, &due, &created, &completedAt, &deletedAt})
        text->clear();
}
