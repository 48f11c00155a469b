#include "manager/TQXMLReadDocument_withProjMgr.h"

#include <gtest/gtest.h>

TEST(TQXMLReadDocument_withProjMgr, ReadsADocumentAndCarriesItsManager) {
    char standIn = 0; // only the address counts
    auto* const manager = reinterpret_cast<TQProjMgr*>(&standIn);
    TQXMLReadDocument_withProjMgr document(manager);
    TQString error;
    ASSERT_TRUE(document.readFromText("<Georef><UnitScale>2.5</UnitScale></Georef>", error));
    _tqxmlgetstatus status{};
    EXPECT_EQ(2.5, document.getDoubleFromChildByName("UnitScale", document.rootElement(), status));
    EXPECT_EQ(TQXMLFound, status);
    EXPECT_EQ(manager, document.projMgr());
}
