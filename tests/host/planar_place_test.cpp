// What lies in a plane goes with it, however the plane is turned, mirrored and scaled.

#include "dxf_samples.h"
#include "support/ge_samples.h"

#include <cstdlib>
#include <map>
#include <sstream>

namespace {

const KdGeTol kClose = KdGeTol().setEqualPoint(1e-8).setEqualVector(1e-9);

/// The numbers of an entity of a drawing by group code, as they are saved.
std::map<int, double> saved(const KdDbDatabase& database, const std::string& kind)
{
    std::istringstream text(korra::drawingText(database));
    std::map<int, double> numbers;
    bool isInside = false;
    for (std::string code, value; std::getline(text, code) && std::getline(text, value);) {
        if (std::stoi(code) == 0)
            isInside = value == kind;
        else if (isInside)
            numbers[std::stoi(code)] = std::strtod(value.c_str(), nullptr);
    }
    return numbers;
}

void transform(const KdDbDatabase& database, const KdGeMatrix3d& matrix)
{
    dxf::changeObject<KdDbEntity>(
        database, 0xA, [&](auto& entity) { EXPECT_EQ(entity.transformBy(matrix), Kdapi::eOk); });
}

class PlanarEntitiesTest : public HostTest {};

TEST_F(PlanarEntitiesTest, StraightPolylinesGoWithAnUnevenScale)
{
    KdGeMatrix3d slanted = KdGeMatrix3d::scaling(KdGeScale3d(3, -1, 0.5), {1, 2, 3});
    slanted(0, 1) = 0.7;
    slanted(2, 0) = -0.4;
    const std::string plane = "; 8 0; 38 7; 30 7; 210 0.48; 220 0.64; 230 -0.6";
    for (const std::string& notes :
         {"0 LWPOLYLINE; 5 A" + plane + "; 10 1; 20 2; 10 3; 20 4; 10 9; 20 -4",
          "0 POLYLINE; 5 A" + plane +
              "\n0 VERTEX; 10 1; 20 2\n0 VERTEX; 10 3; 20 4\n0 VERTEX; 10 9; 20 -4\n0 SEQEND"}) {
        SCOPED_TRACE(notes);
        const auto database = dxf::readWhole(dxf::withEntities(notes));
        const auto* curve = dxf::find<KdDbCurve>(*database, 0xA);
        const auto before = curve->geometry();
        transform(*database, slanted);
        const auto after = curve->geometry();
        for (const double param : {0.0, 0.5, 1.0, 2.0})
            EXPECT_TRUE(
                after->evalPoint(param).isEqualTo(slanted * before->evalPoint(param), kClose));
        EXPECT_FALSE(saved(*database, "VERTEX").contains(40)) << "no width where there was none";
    }
}

TEST_F(PlanarEntitiesTest, ThicknessStandsOnThePlaneAndWidthIsScaled)
{
    const char* kinds[] = {"LINE; 11 4; 21 5; 31 6",
                           "POINT",
                           "CIRCLE; 40 2",
                           "ARC; 40 2; 50 10; 51 70",
                           "TEXT; 40 2; 1 word",
                           "LWPOLYLINE; 38 7; 43 0.5; 10 1; 20 2; 10 3; 20 4",
                           "POLYLINE\n0 VERTEX; 10 1; 20 2\n0 SEQEND"};
    std::vector<KdGeMatrix3d> matrices = similarities();
    matrices.push_back(KdGeMatrix3d::scaling(KdGeScale3d(1, 1, -1)));
    const KdGeVector3d swept = KdGeVector3d(0.48, 0.64, -0.6) * 2.5;
    for (const std::string kind : kinds)
        for (const KdGeMatrix3d& matrix : matrices) {
            SCOPED_TRACE(kind);
            const std::string name = kind.substr(0, kind.find_first_of(";\n"));
            const auto database = dxf::readWhole(dxf::withEntities(
                "0 " + name + "; 5 A; 8 0; 39 -2.5; 210 -0.48; 220 -0.64; 230 0.6" +
                kind.substr(name.size())));
            transform(*database, matrix);
            const auto numbers = saved(*database, name);
            const KdGeVector3d normal(numbers.at(210), numbers.at(220), numbers.at(230));
            EXPECT_TRUE((normal * numbers.at(39)).isEqualTo(matrix * swept, kClose));
            if (name == "LWPOLYLINE") {
                EXPECT_NEAR(numbers.at(43), 0.5 * matrix.scale(), 1e-9);
            }
        }
}

} // namespace
