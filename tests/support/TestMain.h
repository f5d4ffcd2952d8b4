#pragma once

#include <QCoreApplication>
#include <QtTest>

/** The main function of a test program, with UTF-8 as the encoding of child processes. */
#define NOX_TEST_MAIN(TestClass)            \
  int main(int argc, char **argv)           \
  {                                         \
    qputenv("LC_ALL", "C.UTF-8");           \
    QCoreApplication app(argc, argv);       \
    TestClass test;                         \
    return QTest::qExec(&test, argc, argv); \
  }
