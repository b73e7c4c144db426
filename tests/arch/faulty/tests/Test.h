#include <QTest>
