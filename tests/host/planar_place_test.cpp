// What lies in a plane goes with it, however the plane is turned, mirrored and scaled.

#include "dxf_samples.h"
#include "support/ge_samples.h"
#include "support/host_test.h"

#include "kd/own/planar_place.h"

#include <cstdlib>
#include <map>
#include <sstream>

using namespace tests;
using korra::PlanarPlace;

namespace {

const KdGeTol kClose = KdGeTol().setEqualPoint(1e-8).setEqualVector(1e-9);

std::vector<KdGeMatrix3d> matrices()
{
    std::vector<KdGeMatrix3d> all = similarities();
    all.push_back(KdGeMatrix3d::scaling(KdGeScale3d(1, 1, -1)));
    return all;
}

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

KdGeVector3d normalOf(const std::map<int, double>& numbers)
{
    return {numbers.at(210), numbers.at(220), numbers.at(230)};
}

void transform(const KdDbDatabase& database, const KdGeMatrix3d& matrix)
{
    dxf::changeObject<KdDbEntity>(
        database, 0xA, [&](auto& entity) { EXPECT_EQ(entity.transformBy(matrix), Kdapi::eOk); });
}

class PlanarEntitiesTest : public HostTest {};

const KdGeMatrix3d kSlanted = [] {
    KdGeMatrix3d matrix = KdGeMatrix3d::scaling(KdGeScale3d(3, -1, 0.5), {1, 2, 3});
    matrix(0, 1) = 0.7;
    matrix(2, 0) = -0.4;
    return matrix;
}();

TEST_F(PlanarEntitiesTest, PolylinesGoWithAnUnevenScaleUnlessTheyHaveArcs)
{
    const std::string plane = "; 8 0; 38 7; 30 7; 210 0.48; 220 0.64; 230 -0.6";
    for (const std::string& notes :
         {"0 LWPOLYLINE; 5 A" + plane + "; 10 1; 20 2; 42 @BULGE@; 10 3; 20 4; 10 9; 20 -4",
          "0 POLYLINE; 5 A" + plane +
              "\n0 VERTEX; 10 1; 20 2; 42 @BULGE@\n"
              "0 VERTEX; 10 3; 20 4\n0 VERTEX; 10 9; 20 -4\n0 SEQEND"}) {
        SCOPED_TRACE(notes);
        const auto straight =
            dxf::readWhole(dxf::withEntities(dxf::replaced(notes, "@BULGE@", "0")));
        const auto* curve = dxf::find<KdDbCurve>(*straight, 0xA);
        const auto before = curve->geometry();
        transform(*straight, kSlanted);
        const auto after = curve->geometry();
        for (const double param : {0.0, 0.5, 1.0, 2.0})
            EXPECT_TRUE(
                after->evalPoint(param).isEqualTo(kSlanted * before->evalPoint(param), kClose));

        const auto arcs = dxf::readWhole(dxf::withEntities(dxf::replaced(notes, "@BULGE@", "0.5")));
        dxf::changeObject<KdDbEntity>(*arcs, 0xA, [](KdDbEntity& entity) {
            EXPECT_EQ(entity.transformBy(kSlanted), Kdapi::eCannotScaleNonUniformly);
        });
    }
}

TEST_F(PlanarEntitiesTest, WidthsTakeTheMeanOfAnUnevenScale)
{
    const auto database = dxf::readWhole(
        dxf::withEntities("0 LWPOLYLINE; 5 A; 8 0; 39 1; 43 0.5; 10 1; 20 2; 10 3; 20 4"));
    transform(*database, KdGeMatrix3d::scaling(KdGeScale3d(2, 8, -3)));
    EXPECT_NEAR(saved(*database, "LWPOLYLINE").at(43), 2.0, 1e-9);
}

TEST_F(PlanarEntitiesTest, ThicknessStandsOnThePlaneAsBefore)
{
    const char* kinds[] = {"LINE; 11 4; 21 5; 31 6",
                           "POINT",
                           "CIRCLE; 40 2",
                           "ARC; 40 2; 50 10; 51 70",
                           "TEXT; 40 2; 1 word",
                           "LWPOLYLINE; 38 7; 10 1; 20 2; 10 3; 20 4",
                           "POLYLINE\n0 VERTEX; 10 1; 20 2\n0 SEQEND"};
    const KdGeVector3d swept = KdGeVector3d(0.48, 0.64, -0.6) * 2.5;
    for (const std::string kind : kinds)
        for (const KdGeMatrix3d& matrix : matrices()) {
            SCOPED_TRACE(kind);
            const std::string name = kind.substr(0, kind.find_first_of(";\n"));
            const auto database = dxf::readWhole(dxf::withEntities(
                "0 " + name + "; 5 A; 8 0; 39 -2.5; 210 -0.48; 220 -0.64; 230 0.6" +
                kind.substr(name.size())));
            transform(*database, matrix);
            const auto numbers = saved(*database, name);
            EXPECT_TRUE((normalOf(numbers) * numbers.at(39)).isEqualTo(matrix * swept, kClose));
        }
}

TEST_F(PlanarEntitiesTest, TangentsOfAFittedCurveTurnWithIt)
{
    const std::string notes = "0 POLYLINE; 5 A; 8 0; 70 2; 210 0; 220 0.6; 230 0.8\n"
                              "0 VERTEX; 8 0; 10 1; 20 2; 70 2; 50 40\n0 SEQEND; 8 0";
    for (const KdGeMatrix3d& matrix : matrices()) {
        const auto database = dxf::readWhole(dxf::withEntities(notes));
        const KdGeVector3d before = PlanarPlace({0, 0.6, 0.8}).direction(40 * kPi / 180);
        transform(*database, matrix);
        const PlanarPlace after(normalOf(saved(*database, "POLYLINE")));
        const double angle = saved(*database, "VERTEX").at(50) * kPi / 180;
        EXPECT_TRUE(after.direction(angle).isEqualTo((matrix * before).normal(), kClose));
    }
}

} // namespace
