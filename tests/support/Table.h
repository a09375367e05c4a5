#pragma once

#include <QTest>

// The table of a test that goes two ways: one column, a row for false and a row for true.
inline void addBothRows(const char *column, const char *rowOfFalse, const char *rowOfTrue)
{
    QTest::addColumn<bool>(column);
    QTest::newRow(rowOfFalse) << false;
    QTest::newRow(rowOfTrue) << true;
}

// The columns of a table, as addColumns<int, QString>("row", "text").
template <typename... Types, typename... Names>
void addColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}
