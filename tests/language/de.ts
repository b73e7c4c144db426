<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de" sourcelanguage="en_US">
<context>
    <name>IconsHelper</name>
    <message>
        <source>Inbox</source>
        <translation>Eingang</translation>
    </message>
</context>
</TS>
