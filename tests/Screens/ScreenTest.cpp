#include "ScreenTest.h"

#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"

#include <QDir>
#include <QStandardPaths>

void ScreenTest::openWindow(const QSize &size)
{
    kScreenWidth = size.width();
    kScreenHeight = size.height();
    m_window = std::make_unique<ScreenWindow>(size);
}

void ScreenTest::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_network = std::make_unique<FakeReachability>();
    BrevantoUtils::customizeNavBarThroughOutApp();
}

void ScreenTest::init()
{
    QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).removeRecursively();
    m_server = std::make_unique<RawServer>();
}

void ScreenTest::cleanup()
{
    m_network->setOnline();
    m_window.reset();
    m_server.reset();
}
