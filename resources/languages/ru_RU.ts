<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru_RU" sourcelanguage="en_US">
<context>
    <name>AboutDialog</name>
    <message>
        <source>About %1</source>
        <translation>О программе %1</translation>
    </message>
    <message>
        <source>%1 web-site &lt;a href=%2&gt;%3&lt;/a&gt;.</source>
        <translation>Сайт %1: &lt;a href=%2&gt;%3&lt;/a&gt;.</translation>
    </message>
    <message>
        <source>%1 uses &lt;a href=aboutqt&gt;Qt library&lt;/a&gt; under GNU LGPL 2.1.</source>
        <translation>%1 использует &lt;a href=aboutqt&gt;библиотеку Qt&lt;/a&gt; по лицензии GNU LGPL 2.1.</translation>
    </message>
    <message>
        <source>&lt;a href=eula&gt;End-user license agreement&lt;/a&gt; used by %1.</source>
        <translation>&lt;a href=eula&gt;Лицензионное соглашение&lt;/a&gt; программы %1.</translation>
    </message>
    <message>
        <source>Update to %1 is available! &lt;a href=&quot;%2&quot;&gt;Download...&lt;/a&gt;</source>
        <translation>Доступно обновление до версии %1! &lt;a href=&quot;%2&quot;&gt;Скачать...&lt;/a&gt;</translation>
    </message>
    <message>
        <source>Donate</source>
        <translation>Пожертвовать</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>About Qt Library</source>
        <translation>О библиотеке Qt</translation>
    </message>
    <message>
        <source>Unable to read a license file. Please, report this issue.</source>
        <translation>Не удалось прочитать файл лицензии. Пожалуйста, сообщите нам об этом.</translation>
    </message>
</context>
<context>
    <name>ActionsHelper</name>
    <message>
        <source>New</source>
        <translation>Создать</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>Toggle view</source>
        <translation>Сменить вид</translation>
    </message>
    <message>
        <source>Cleanup</source>
        <translation>Прибрать</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>Обычный</translation>
    </message>
    <message>
        <source>Compact</source>
        <translation>Компактный</translation>
    </message>
</context>
<context>
    <name>BackupsDialog</name>
    <message>
        <source>Backups</source>
        <translation>Резервные копии</translation>
    </message>
    <message>
        <source>&lt;strong&gt;Choose the version you want to go back to&lt;/strong&gt;</source>
        <translation>&lt;strong&gt;Выберите версию, к которой хотите вернуться&lt;/strong&gt;</translation>
    </message>
    <message>
        <source>Earlier versions</source>
        <translation>Прежние версии</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Дата</translation>
    </message>
    <message>
        <source>Tasks</source>
        <translation>Задачи</translation>
    </message>
    <message>
        <source>Groups</source>
        <translation>Группы</translation>
    </message>
    <message>
        <source>Missing now</source>
        <translation>Сейчас нет</translation>
    </message>
    <message>
        <source>Tasks of that version which no group has any more</source>
        <translation>Задачи той версии, которых больше нет ни в одной группе</translation>
    </message>
    <message>
        <source>Bring missing tasks back</source>
        <translation>Вернуть недостающие задачи</translation>
    </message>
    <message>
        <source>Puts them into a new group</source>
        <translation>Поместить их в новую группу</translation>
    </message>
    <message>
        <source>Return to this version</source>
        <translation>Вернуться к этой версии</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>The file cannot be read: %1</source>
        <translation>Файл не читается: %1</translation>
    </message>
    <message>
        <source>Written by a newer version of the program</source>
        <translation>Записано более новой версией программы</translation>
    </message>
    <message>
        <source>The file is damaged</source>
        <translation>Файл повреждён</translation>
    </message>
    <message>
        <source>Last version, %1</source>
        <translation>Предыдущая версия, %1</translation>
    </message>
    <message>
        <source>Reading…</source>
        <translation>Чтение…</translation>
    </message>
    <message>
        <source>There are no backups yet.</source>
        <translation>Резервных копий пока нет.</translation>
    </message>
    <message>
        <source>This version cannot be gone back to any more.</source>
        <translation>К этой версии больше нельзя вернуться.</translation>
    </message>
</context>
<context>
    <name>CTagsEdit</name>
    <message>
        <source>Tags</source>
        <translation>Метки</translation>
    </message>
</context>
<context>
    <name>ChosenFile</name>
    <message>
        <source>The file &quot;%1&quot; belongs to %2 itself. Please choose another one.</source>
        <translation>Файл «%1» принадлежит самой программе %2. Выберите другой.</translation>
    </message>
    <message>
        <source>Failed to open file &quot;%1&quot; for writing.</source>
        <translation>Не удалось открыть файл «%1» для записи.</translation>
    </message>
    <message>
        <source>There is no room left on the disk.</source>
        <translation>На диске не осталось места.</translation>
    </message>
    <message>
        <source>You have no permission to write there.</source>
        <translation>У вас нет права записи в это место.</translation>
    </message>
    <message>
        <source>The folder is gone.</source>
        <translation>Папка исчезла.</translation>
    </message>
    <message>
        <source>The disk can only be read.</source>
        <translation>Диск доступен только для чтения.</translation>
    </message>
    <message>
        <source>The reason is unknown.</source>
        <translation>Причина неизвестна.</translation>
    </message>
    <message>
        <source>The system says: %1.</source>
        <translation>Ответ системы: %1.</translation>
    </message>
    <message>
        <source>Failed to write the file &quot;%1&quot;. Nothing was changed.</source>
        <translation>Не удалось записать файл «%1». Ничего не изменено.</translation>
    </message>
</context>
<context>
    <name>CommitStrip</name>
    <message>
        <source>Try now</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>Save a copy…</source>
        <translation>Сохранить копию…</translation>
    </message>
    <message>
        <source>Last tried at %1.</source>
        <translation>Попытка в %1.</translation>
    </message>
    <message>
        <source>Since %1 your changes are saved only when %2 ends.</source>
        <translation>С %1 изменения сохраняются только при выходе из %2.</translation>
    </message>
    <message>
        <source>Save a copy</source>
        <translation>Сохранить копию</translation>
    </message>
    <message>
        <source>XML files (*.xml)</source>
        <translation>Файлы XML (*.xml)</translation>
    </message>
    <message>
        <source>The system starts no further thread, which saving needs.</source>
        <translation>Система не запускает ещё один поток, нужный для сохранения.</translation>
    </message>
    <message>
        <source>Not saved!</source>
        <translation>Не сохранено!</translation>
    </message>
    <message>
        <source>Saving your changes has failed since %1.</source>
        <translation>С %1 не удаётся сохранить изменения.</translation>
    </message>
</context>
<context>
    <name>DateWidget</name>
    <message>
        <source>Due date</source>
        <translation>Срок</translation>
    </message>
    <message>
        <source>Not a date. Please write it like this: %1</source>
        <translation>Это не дата. Введите её, например, так: %1</translation>
    </message>
</context>
<context>
    <name>EditGroupDialog</name>
    <message>
        <source>New group</source>
        <translation>Новая группа</translation>
    </message>
    <message>
        <source>Group properties</source>
        <translation>Свойства группы</translation>
    </message>
    <message>
        <source>Icon selection</source>
        <translation>Выбор значка</translation>
    </message>
    <message>
        <source>Group name</source>
        <translation>Название группы</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Please enter a group name to continue...</source>
        <translation>Чтобы продолжить, введите название группы...</translation>
    </message>
    <message>
        <source>Ok, now we all know that you&apos;re funny! Wanna play a real game?</source>
        <translation>Ладно, шутку мы оценили! Может, сыграем во что-нибудь поинтереснее?</translation>
    </message>
</context>
<context>
    <name>EulaDialog</name>
    <message>
        <source>%1 License Agreement</source>
        <translation>Лицензионное соглашение %1</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Scroll down to read the rest of the license agreement.</source>
        <translation>Прокрутите вниз, чтобы прочитать соглашение до конца.</translation>
    </message>
    <message>
        <source>Accept</source>
        <translation>Принять</translation>
    </message>
    <message>
        <source>Reject</source>
        <translation>Отклонить</translation>
    </message>
</context>
<context>
    <name>ExportDialog</name>
    <message>
        <source>Export</source>
        <translation>Экспорт</translation>
    </message>
    <message>
        <source>&lt;strong&gt;Select the groups you want to export&lt;/strong&gt;</source>
        <translation>&lt;strong&gt;Выберите группы для экспорта&lt;/strong&gt;</translation>
    </message>
    <message>
        <source>Groups to export</source>
        <translation>Группы для экспорта</translation>
    </message>
    <message>
        <source>Select all</source>
        <translation>Выбрать все</translation>
    </message>
    <message>
        <source>Select none</source>
        <translation>Снять выбор</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Export to</source>
        <translation>Экспорт в файл</translation>
    </message>
    <message>
        <source>Text files (*.txt)</source>
        <translation>Текстовые файлы (*.txt)</translation>
    </message>
</context>
<context>
    <name>FindPanel</name>
    <message>
        <source>Find commands</source>
        <translation>Найти команду</translation>
    </message>
    <message>
        <source>Find tasks, groups and commands</source>
        <translation>Найти задачу, группу или команду</translation>
    </message>
    <message>
        <source>Results</source>
        <translation>Результаты</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Ничего не найдено</translation>
    </message>
</context>
<context>
    <name>FocusGroup</name>
    <message>
        <source>Inbox</source>
        <translation>Входящие</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Выполненные</translation>
    </message>
    <message>
        <source>Trash</source>
        <translation>Корзина</translation>
    </message>
</context>
<context>
    <name>FocusGroupListWidget</name>
    <message>
        <source>Groups</source>
        <translation>Группы</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>Add group</source>
        <translation>Добавить группу</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Очистить</translation>
    </message>
    <message>
        <source>Empty %1</source>
        <translation>Очистить «%1»</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Экспорт...</translation>
    </message>
    <message>
        <source>Do you really want to remove the selected group?</source>
        <translation>Удалить выбранную группу?</translation>
    </message>
    <message>
        <source>Once your tasks leave the trash group you can&apos;t get them back. Continue?</source>
        <translation>Задачи, удалённые из корзины, вернуть нельзя. Продолжить?</translation>
    </message>
</context>
<context>
    <name>FocusGroupWidget</name>
    <message>
        <source>%1 due now</source>
        <translation>срочных: %1</translation>
    </message>
    <message>
        <source>%1 soon</source>
        <translation>скоро: %1</translation>
    </message>
    <message>
        <source>%1 later</source>
        <translation>позже: %1</translation>
    </message>
</context>
<context>
    <name>FoundTask</name>
    <message>
        <source>in %1</source>
        <translation>в группе: %1</translation>
    </message>
    <message>
        <source>due %1</source>
        <translation>срок: %1</translation>
    </message>
    <message>
        <source>completed</source>
        <translation>выполнена</translation>
    </message>
</context>
<context>
    <name>GroupHintWidget</name>
    <message>
        <source>&lt;html&gt;&lt;head&gt;&lt;style&gt;a { color: #1b75bb; text-decoration: none; } &lt;/style&gt;&lt;/head&gt;&lt;body&gt;This is Inbox, a default group to hold all new incoming tasks.&lt;br&gt;Looks like it&apos;s empty right now. Lets have some fun, &lt;a href=inboxheadstart&gt;click here&lt;/a&gt; to fill it up with some predefined tasks.&lt;br&gt;&lt;br&gt;Use &quot;Add group&quot; from the context menu on the group panel to add another group.&lt;/body&gt;&lt;/html&gt;</source>
        <translation>&lt;html&gt;&lt;head&gt;&lt;style&gt;a { color: #1b75bb; text-decoration: none; } &lt;/style&gt;&lt;/head&gt;&lt;body&gt;Это «Входящие» — группа, в которую попадают все новые задачи.&lt;br&gt;Сейчас она пуста. &lt;a href=inboxheadstart&gt;Нажмите здесь&lt;/a&gt;, чтобы для начала добавить в неё несколько готовых задач.&lt;br&gt;&lt;br&gt;Чтобы создать ещё одну группу, выберите «Добавить группу» в контекстном меню панели групп.&lt;/body&gt;&lt;/html&gt;</translation>
    </message>
    <message>
        <source>Trash group holds all the tasks that you have ever deleted.&lt;br&gt;You can restore deleted tasks by dragging them back to one of the existing groups.&lt;br&gt;&lt;br&gt;If you delete a task from Trash - it&apos;s gone...</source>
        <translation>В корзине находятся все удалённые задачи.&lt;br&gt;Чтобы восстановить задачу, перетащите её в одну из групп.&lt;br&gt;&lt;br&gt;Задача, удалённая из корзины, исчезает навсегда.</translation>
    </message>
    <message>
        <source>This group holds all the tasks that were completed by you and logged.</source>
        <translation>Здесь собраны все задачи, которые вы выполнили и убрали из групп.</translation>
    </message>
    <message>
        <source>This is your custom group.&lt;br&gt;&lt;br&gt;Add more groups to focus on similar tasks</source>
        <translation>Это ваша собственная группа.&lt;br&gt;&lt;br&gt;Добавляйте группы, чтобы держать похожие задачи вместе</translation>
    </message>
</context>
<context>
    <name>HistoryView</name>
    <message>
        <source>change</source>
        <translation>изменение</translation>
    </message>
    <message>
        <source>new task</source>
        <translation>новая задача</translation>
    </message>
    <message>
        <source>edit of a task</source>
        <translation>правка задачи</translation>
    </message>
    <message>
        <source>tick</source>
        <translation>отметка о выполнении</translation>
    </message>
    <message>
        <source>move of tasks</source>
        <translation>перемещение задач</translation>
    </message>
    <message>
        <source>tasks added to a group</source>
        <translation>добавление задач в группу</translation>
    </message>
    <message>
        <source>new order of tasks</source>
        <translation>новый порядок задач</translation>
    </message>
    <message>
        <source>deletion of tasks</source>
        <translation>удаление задач</translation>
    </message>
    <message>
        <source>cleanup</source>
        <translation>уборка</translation>
    </message>
    <message>
        <source>starter tasks</source>
        <translation>первые задачи</translation>
    </message>
    <message>
        <source>pasted tasks</source>
        <translation>вставка задач</translation>
    </message>
    <message>
        <source>new group</source>
        <translation>новая группа</translation>
    </message>
    <message>
        <source>edit of a group</source>
        <translation>правка группы</translation>
    </message>
    <message>
        <source>new order of groups</source>
        <translation>новый порядок групп</translation>
    </message>
    <message>
        <source>removal of a group</source>
        <translation>удаление группы</translation>
    </message>
    <message>
        <source>emptying of the Trash</source>
        <translation>очистка корзины</translation>
    </message>
    <message>
        <source>tasks brought back</source>
        <translation>возврат задач</translation>
    </message>
    <message>
        <source>return to a backup</source>
        <translation>возврат к резервной копии</translation>
    </message>
    <message>
        <source>Tasks deleted: %1</source>
        <translation>Удалено задач: %1</translation>
    </message>
    <message>
        <source>Tasks cleaned up: %1</source>
        <translation>Убрано задач: %1</translation>
    </message>
    <message>
        <source>Group removed: %1</source>
        <translation>Группа удалена: %1</translation>
    </message>
    <message>
        <source>Tasks gone from the Trash: %1</source>
        <translation>Удалено из корзины: %1</translation>
    </message>
    <message>
        <source>Tasks brought back: %1</source>
        <translation>Возвращено задач: %1</translation>
    </message>
    <message>
        <source>Back to the version of %1</source>
        <translation>Восстановлена версия от %1</translation>
    </message>
    <message>
        <source>Undo: %1</source>
        <translation>Отменить: %1</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Отменить</translation>
    </message>
    <message>
        <source>Redo: %1</source>
        <translation>Повторить: %1</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Повторить</translation>
    </message>
    <message>
        <source>Backup of %1</source>
        <translation>Копия от %1</translation>
    </message>
    <message>
        <source>Undone: %1</source>
        <translation>Отменено: %1</translation>
    </message>
    <message>
        <source>Redone: %1</source>
        <translation>Повторено: %1</translation>
    </message>
</context>
<context>
    <name>IconsHelper</name>
    <message>
        <source>Starred</source>
        <translation>Избранное</translation>
    </message>
    <message>
        <source>Blue Star</source>
        <translation>Синяя звезда</translation>
    </message>
    <message>
        <source>Green Star</source>
        <translation>Зелёная звезда</translation>
    </message>
    <message>
        <source>Red Star</source>
        <translation>Красная звезда</translation>
    </message>
    <message>
        <source>Yellow Star</source>
        <translation>Жёлтая звезда</translation>
    </message>
    <message>
        <source>Inbox</source>
        <translation>Входящие</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Выполненные</translation>
    </message>
    <message>
        <source>To Check</source>
        <translation>Проверить</translation>
    </message>
    <message>
        <source>Trash</source>
        <translation>Корзина</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>Дом</translation>
    </message>
    <message>
        <source>Internet</source>
        <translation>Интернет</translation>
    </message>
    <message>
        <source>Some Day</source>
        <translation>Когда-нибудь</translation>
    </message>
    <message>
        <source>Party Time</source>
        <translation>Праздник</translation>
    </message>
    <message>
        <source>Calls</source>
        <translation>Звонки</translation>
    </message>
    <message>
        <source>Money</source>
        <translation>Деньги</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Previous and next group: %1, %2</source>
        <translation>Предыдущая и следующая группа: %1, %2</translation>
    </message>
    <message>
        <source>Hide the window: %1
Quit: %2</source>
        <translation>Скрыть окно: %1
Выйти: %2</translation>
    </message>
</context>
<context>
    <name>MyCalendar</name>
    <message>
        <source>Previous month</source>
        <translation>Предыдущий месяц</translation>
    </message>
    <message>
        <source>Reset to current date</source>
        <translation>Вернуться к текущей дате</translation>
    </message>
    <message>
        <source>Next month</source>
        <translation>Следующий месяц</translation>
    </message>
</context>
<context>
    <name>PrefsDialog</name>
    <message>
        <source>%1 Preferences</source>
        <translation>Настройки %1</translation>
    </message>
    <message>
        <source>General</source>
        <translation>Общие</translation>
    </message>
    <message>
        <source>Show notifications</source>
        <translation>Показывать уведомления</translation>
    </message>
    <message>
        <source>This desktop shows no notifications</source>
        <translation>Эта среда не показывает уведомлений</translation>
    </message>
    <message>
        <source>Run on system startup</source>
        <translation>Запускать при входе в систему</translation>
    </message>
    <message>
        <source>Open window on startup</source>
        <translation>Открывать окно при запуске</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Язык</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
</context>
<context>
    <name>ProductHelper</name>
    <message>
        <source>Donate</source>
        <translation>Пожертвовать</translation>
    </message>
    <message>
        <source>&lt;p&gt;If you fell like you are ready to support Quendel, please do!&lt;br/&gt;&lt;br/&gt;&lt;a href=&quot;%1&quot;&gt;%1&lt;/a&gt;&lt;/p&gt;</source>
        <translation>&lt;p&gt;Если вы готовы поддержать Quendel, мы будем вам признательны.&lt;br/&gt;&lt;br/&gt;&lt;a href=&quot;%1&quot;&gt;%1&lt;/a&gt;&lt;/p&gt;</translation>
    </message>
</context>
<context>
    <name>StarterTask</name>
    <message>
        <source>Submit your ideas on features, any likes and dislikes</source>
        <translation>Отправить свои пожелания и отзывы о программе</translation>
    </message>
    <message>
        <source>Create a focus group</source>
        <translation>Создать группу задач</translation>
    </message>
    <message>
        <source>Right-click anywhere on the left panel and select &quot;Add group&quot; menu.</source>
        <translation>Щёлкните правой кнопкой мыши в любом месте левой панели и выберите «Добавить группу».</translation>
    </message>
    <message>
        <source>Support the team and development</source>
        <translation>Поддержать разработчиков</translation>
    </message>
    <message>
        <source>Visit %1 and make a donation to support the team if you like the software.</source>
        <translation>Если программа вам нравится, зайдите на %1 и поддержите разработчиков пожертвованием.</translation>
    </message>
    <message>
        <source>Have a coffee :)</source>
        <translation>Выпить кофе :)</translation>
    </message>
</context>
<context>
    <name>StartupRefusal</name>
    <message>
        <source>%1</source>
        <translation>%1</translation>
    </message>
    <message>
        <source>&lt;p&gt;The task database was created with a newer version of %1 application.&lt;/p&gt;&lt;p&gt;Please visit &lt;a href=&quot;%2&quot;&gt;%3&lt;/a&gt; to upgrade your installation.&lt;/p&gt;</source>
        <translation>&lt;p&gt;База данных задач создана более новой версией программы %1.&lt;/p&gt;&lt;p&gt;Чтобы обновить программу, посетите сайт &lt;a href=&quot;%2&quot;&gt;%3&lt;/a&gt;.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>&lt;p&gt;Task database failed to load for some reason. %1 can not continue to avoid further database corruption.&lt;/p&gt;&lt;p&gt;Please visit &lt;a href=&quot;%2&quot;&gt;%3&lt;/a&gt; and request help.&lt;/p&gt;</source>
        <translation>&lt;p&gt;Не удалось загрузить базу данных задач. Чтобы не повредить её ещё больше, программа %1 завершит работу.&lt;/p&gt;&lt;p&gt;Обратитесь за помощью на сайт &lt;a href=&quot;%2&quot;&gt;%3&lt;/a&gt;.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>&lt;p&gt;%1 cannot use the folder &quot;%2&quot;: nothing can be locked there, and another copy might be running.&lt;/p&gt;&lt;p&gt;It does not start, so that no task is overwritten. Please make sure that the folder exists and that you may read it.&lt;/p&gt;</source>
        <translation>&lt;p&gt;%1 не может работать с папкой «%2»: в ней ничего нельзя заблокировать, и не исключено, что запущена другая копия программы.&lt;/p&gt;&lt;p&gt;Чтобы не перезаписать задачи, программа завершит работу. Убедитесь, что папка существует и вам разрешено её читать.&lt;/p&gt;</translation>
    </message>
</context>
<context>
    <name>TaskListWidget</name>
    <message>
        <source>Tasks</source>
        <translation>Задачи</translation>
    </message>
</context>
<context>
    <name>TaskWidget</name>
    <message>
        <source>Notes</source>
        <translation>Заметки</translation>
    </message>
    <message>
        <source>Task name</source>
        <translation>Название задачи</translation>
    </message>
    <message>
        <source>&lt;Unnamed task&gt;</source>
        <translation>&lt;Без названия&gt;</translation>
    </message>
    <message>
        <source>Completed</source>
        <translation>Выполнена</translation>
    </message>
</context>
<context>
    <name>TrayIcon</name>
    <message>
        <source>Show %1</source>
        <translation>Показать %1</translation>
    </message>
    <message>
        <source>Export...</source>
        <translation>Экспорт...</translation>
    </message>
    <message>
        <source>Donate...</source>
        <translation>Пожертвовать...</translation>
    </message>
    <message>
        <source>Preferences...</source>
        <translation>Настройки...</translation>
    </message>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Выход</translation>
    </message>
    <message>
        <source>%1 update</source>
        <translation>Обновление %1</translation>
    </message>
    <message>
        <source>%1 %2 is available! Check out the About section for a download link.</source>
        <translation>Вышла новая версия: %1 %2! Ссылка для скачивания — в окне «О программе».</translation>
    </message>
</context>
<context>
    <name>UndoNote</name>
    <message>
        <source>Undo</source>
        <translation>Отменить</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Повторить</translation>
    </message>
</context>
<context>
    <name>WindowCommands</name>
    <message>
        <source>New task</source>
        <translation>Новая задача</translation>
    </message>
    <message>
        <source>Edit task</source>
        <translation>Изменить задачу</translation>
    </message>
    <message>
        <source>Tick or untick</source>
        <translation>Отметить или снять отметку</translation>
    </message>
    <message>
        <source>Delete tasks</source>
        <translation>Удалить задачи</translation>
    </message>
    <message>
        <source>Clean up</source>
        <translation>Прибрать</translation>
    </message>
    <message>
        <source>Select all tasks</source>
        <translation>Выбрать все задачи</translation>
    </message>
    <message>
        <source>Copy tasks</source>
        <translation>Копировать задачи</translation>
    </message>
    <message>
        <source>Paste lines as tasks</source>
        <translation>Вставить строки как задачи</translation>
    </message>
    <message>
        <source>Add group</source>
        <translation>Добавить группу</translation>
    </message>
    <message>
        <source>Edit group</source>
        <translation>Изменить группу</translation>
    </message>
    <message>
        <source>Remove group</source>
        <translation>Удалить группу</translation>
    </message>
    <message>
        <source>Menu of the group</source>
        <translation>Меню группы</translation>
    </message>
    <message>
        <source>Previous group</source>
        <translation>Предыдущая группа</translation>
    </message>
    <message>
        <source>Next group</source>
        <translation>Следующая группа</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Найти</translation>
    </message>
    <message>
        <source>Commands and their keys</source>
        <translation>Команды и их клавиши</translation>
    </message>
    <message>
        <source>Switch between normal and compact view</source>
        <translation>Обычный или компактный вид</translation>
    </message>
    <message>
        <source>Export…</source>
        <translation>Экспорт…</translation>
    </message>
    <message>
        <source>Backups…</source>
        <translation>Резервные копии…</translation>
    </message>
    <message>
        <source>Preferences…</source>
        <translation>Настройки…</translation>
    </message>
    <message>
        <source>About</source>
        <translation>О программе</translation>
    </message>
    <message>
        <source>Hide the window</source>
        <translation>Скрыть окно</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>Выйти</translation>
    </message>
    <message>
        <source>Leave the form</source>
        <translation>Закрыть форму</translation>
    </message>
    <message>
        <source>Next and previous task</source>
        <translation>Следующая и предыдущая задача</translation>
    </message>
    <message>
        <source>A page down and up</source>
        <translation>Страница вниз и вверх</translation>
    </message>
    <message>
        <source>First and last task</source>
        <translation>Первая и последняя задача</translation>
    </message>
    <message>
        <source>Extend or shrink the selection</source>
        <translation>Расширить или сузить выделение</translation>
    </message>
    <message>
        <source>Edit the task that was found</source>
        <translation>Изменить найденную задачу</translation>
    </message>
    <message>
        <source>Empty the Trash</source>
        <translation>Очистить корзину</translation>
    </message>
</context>
</TS>
