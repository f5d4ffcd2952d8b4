#pragma once

#include <QCoreApplication>
#include <QtTest>

/** A test program's main: the texts of child processes are UTF-8, whatever the caller's locale. */
#define NOX_TEST_MAIN(TestClass)            \
  int main(int argc, char **argv)           \
  {                                         \
    qputenv("LC_ALL", "C.UTF-8");           \
    QCoreApplication app(argc, argv);       \
    TestClass test;                         \
    return QTest::qExec(&test, argc, argv); \
  }
