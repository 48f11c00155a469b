#pragma once

#include "projection/TQProjection.h"
#include "testing/ProjectionTables.h"
#include "testing/SampleProjection.h"
#include "testing/StreamBytes.h"
#include "testing/TextLines.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

/// A parameter of a projection class as the sample has it.
struct SampleParameter {
    ListedParameter listed;
    std::string otherValue;  ///< a value that the sample does not have
    double tolerance = -1.0; ///< the largest difference that is none; negative for no number
    bool isForm = false;     ///< whether it says the form, which every table that is taken must name
};

/// The tag of a block in a class's archive.
struct ArchiveTag {
    std::string className;
    int oldestVersion;
    int newestVersion; ///< the one that is written
};

/// What the tests that are the same for every projection class need to know of one. The sample is a
/// projection named kSampleName on sampleEllipsoid() with the parameters listed here.
struct ProjectionClass {
    std::vector<const char*> lineage; ///< the class and its ancestors below TQObject
    int typeCode;
    std::string typeName;
    std::function<std::unique_ptr<TQProjection>()> make; ///< a projection in the class's default state
    std::vector<SampleParameter> parameters;

    TextLines headLines;      ///< of the class's text block, before the base block
    TextLines innerHeadLines; ///< of a parent's block around the base block, whose version alone counts
    TextLines valueLines;     ///< of the class's text block, behind the base block
    int oldestTextVersion;    ///< the oldest version of the text block that is read
    int newestTextVersion;    ///< the newest one, which is written
    int codeWhenNotOpened;    ///< of the text block
    int codeOfUnknownVersion; ///< of the text block
    std::string textClass;    ///< the class that reports an unknown version of the text block

    StreamBytes archive;               ///< of the sample
    std::vector<ArchiveTag> tags;      ///< in the archive, from the first byte on one behind the other
    std::string wktItems;              ///< of the sample, behind the geographic system
    std::vector<std::string> wktLines; ///< what is reported while it is written

    int codeWithoutEllipsoid = -1; ///< of both conversions
    bool convertsWithoutEllipsoid = false;
    bool constantsAreCompleted = true;   ///< whether setParams() and loadFromFile() compute all constants
    bool parametersAreDefinition = true; ///< whether hasSameDefinition() compares the parameters
    bool everyReadingFailureIsMinusOne = false; ///< whether the reader hides the inner blocks' codes
};

/// Names the class where a test shows its parameter.
inline std::ostream& operator<<(std::ostream& out, const ProjectionClass& projectionClass) {
    return out << projectionClass.lineage.front();
}

/// The tests that every projection class must pass. They stand in ProjectionClassTest.cpp; a class takes
/// part with INSTANTIATE_TEST_SUITE_P in its own file.
class ProjectionClassTest : public testing::TestWithParam<ProjectionClass> {
  protected:
    /// A projection of the class in its default state.
    static std::unique_ptr<TQProjection> fresh() { return GetParam().make(); }

    /// The sample, on an ellipsoid of the fixture.
    std::unique_ptr<TQProjection> sample();

    /// Hands a projection a table, to which the parameters are added that say the sample's form.
    static void takeInForm(TQProjection& projection, ParameterTable& parameters);

    /// What the reader answers where the block within answers a code.
    static int readingCode(int code);

    /// The lines of the sample's text.
    static TextLines lines();

    /// The same without the header of the class's own block.
    static TextLines linesWithoutHeader();

    /// Checks that a projection is the sample in all but the ellipsoid object, and converts like it.
    void expectSample(const TQProjection& projection);

    TQEllipsoid _ellipsoid = sampleEllipsoid();
};
