// What lies in a plane goes with it, however the plane is turned, mirrored and scaled.

#include "dxf_samples.h"
#include "support/ge_samples.h"
#include "support/host_test.h"

#include "kd/own/planar_place.h"

#include <cmath>
#include <map>
#include <sstream>

using namespace tests;
using korra::PlanarPlace;
using korra::PlaneImage;

namespace {

const KdGeTol kClose = KdGeTol().setEqualPoint(1e-8).setEqualVector(1e-9);

std::vector<KdGeMatrix3d> matrices()
{
    std::vector<KdGeMatrix3d> all = similarities();
    all.push_back(KdGeMatrix3d::kIdentity);
    all.push_back(KdGeMatrix3d::scaling(KdGeScale3d(1, 1, -1)));
    all.push_back(KdGeMatrix3d::scaling(KdGeScale3d(-2, 2, 2)));
    return all;
}

/// The numbers of an entity of a drawing by group code, as they are saved.
std::map<int, double> saved(const KdDbDatabase& database, const std::string& kind)
{
    std::istringstream text(korra::drawingText(database));
    std::map<int, double> numbers;
    std::string code;
    std::string value;
    bool isInside = false;
    while (std::getline(text, code) && std::getline(text, value)) {
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

TEST(PlanarPlaceTest, ImageTakesPointsAndDirectionsWhereTheMatrixTakesThem)
{
    const KdGePoint3d point(3, -4, 5);
    for (const KdGeVector3d& normal : {KdGeVector3d(0, 0, 1), KdGeVector3d(0.3, -0.4, 0.8)})
        for (const KdGeMatrix3d& matrix : matrices()) {
            PlanarPlace place(normal);
            const KdGePoint3d moved = matrix * (place.toBlock() * point);
            const KdGeVector3d direction = (matrix * place.direction(2.5)).normal();
            const PlaneImage image = place.transformBy(matrix);
            const double angle = image.angle(2.5);
            EXPECT_TRUE((place.toBlock() * (image.map * point)).isEqualTo(moved, kClose));
            EXPECT_TRUE(place.direction(angle).isEqualTo(direction, kClose));
            EXPECT_NEAR(place.angleOf(direction), angle, 1e-9);
            EXPECT_NEAR(image.scale, std::cbrt(std::abs(matrix.det())), 1e-9);
            // Counter-clockwise stays so.
            EXPECT_NEAR(KdGe::normalAngle(image.angle(2.75) - angle), 0.25, 1e-9);
            EXPECT_NEAR(place.normal().length(), 1.0, 1e-12);
        }
}

class PlanarEntitiesTest : public HostTest {};

const KdGeMatrix3d kSlanted = [] {
    KdGeMatrix3d matrix = KdGeMatrix3d::scaling(KdGeScale3d(3, -1, 0.5), {1, 2, 3});
    matrix(0, 1) = 0.7;
    matrix(2, 0) = -0.4;
    return matrix;
}();

TEST_F(PlanarEntitiesTest, PolylinesWithoutArcsGoWithAnUnevenScale)
{
    const std::string plane = "8 0; 210 0.48; 220 0.64; 230 -0.6";
    const std::string kinds[] = {
        "0 LWPOLYLINE; 5 A; 38 7; 10 1; 20 2; 10 3; 20 4; 10 9; 20 -4; @PLANE@",
        "0 POLYLINE; 5 A; 10 0; 20 0; 30 7; @PLANE@\n0 VERTEX; 10 1; 20 2\n"
        "0 VERTEX; 10 3; 20 4\n0 VERTEX; 10 9; 20 -4\n0 SEQEND"};
    for (const std::string& kind : kinds) {
        SCOPED_TRACE(kind);
        const auto database =
            dxf::readWhole(dxf::withEntities(dxf::replaced(kind, "@PLANE@", plane)));
        std::vector<KdGePoint3d> points;
        const auto eachPoint = [&](const auto& take) {
            dxf::changeObject<KdDbCurve>(*database, 0xA, [&](KdDbCurve& curve) {
                for (int step = 0; step <= 4; ++step)
                    take(step, curve.geometry()->evalPoint(0.5 * step));
            });
        };
        eachPoint([&](int, const KdGePoint3d& point) { points.push_back(point); });
        transform(*database, kSlanted);
        eachPoint([&](int step, const KdGePoint3d& point) {
            EXPECT_TRUE(
                point.isEqualTo(kSlanted * points.at(static_cast<std::size_t>(step)), kClose));
        });
    }
}

TEST_F(PlanarEntitiesTest, WidthsTakeTheMeanOfAnUnevenScaleAndArcsNone)
{
    const auto database = dxf::readWhole(
        dxf::withEntities("0 LWPOLYLINE; 5 A; 8 0; 39 1; 43 0.5; 10 1; 20 2; 10 3; 20 4"));
    transform(*database, KdGeMatrix3d::scaling(KdGeScale3d(2, 8, -3)));
    EXPECT_NEAR(saved(*database, "LWPOLYLINE").at(43), 2.0, 1e-9);
    EXPECT_NEAR(saved(*database, "LWPOLYLINE").at(39), -3.0, 1e-9);

    for (const char* notes : {"0 LWPOLYLINE; 5 A; 8 0; 10 1; 20 2; 42 0.5; 10 3; 20 4",
                              "0 POLYLINE; 5 A; 8 0\n0 VERTEX; 10 1; 20 2; 42 0.5\n"
                              "0 VERTEX; 10 3; 20 4\n0 SEQEND"}) {
        const auto arcs = dxf::readWhole(dxf::withEntities(notes));
        dxf::changeObject<KdDbEntity>(*arcs, 0xA, [](KdDbEntity& entity) {
            EXPECT_EQ(entity.transformBy(kSlanted), Kdapi::eCannotScaleNonUniformly);
        });
    }
}

TEST_F(PlanarEntitiesTest, ThicknessStandsOnThePlaneAsBefore)
{
    const std::string kinds[] = {"LINE; 5 A; 11 4; 21 5; 31 6",
                                 "POINT; 5 A",
                                 "CIRCLE; 5 A; 40 2",
                                 "ARC; 5 A; 40 2; 50 10; 51 70",
                                 "TEXT; 5 A; 40 2; 1 word",
                                 "LWPOLYLINE; 5 A; 38 7; 10 1; 20 2; 10 3; 20 4",
                                 "POLYLINE; 5 A\n0 VERTEX; 10 1; 20 2\n0 SEQEND"};
    for (const std::string& kind : kinds)
        for (const double thickness : {2.5, -2.5})
            for (const KdGeMatrix3d& matrix : matrices()) {
                SCOPED_TRACE(kind);
                const std::string plane = "; 8 0; 39 " + std::to_string(thickness) +
                                          "; 210 0.48; 220 0.64; 230 -0.6; 5 A";
                const auto database =
                    dxf::readWhole(dxf::withEntities("0 " + dxf::replaced(kind, "; 5 A", plane)));
                const KdGeVector3d swept = KdGeVector3d(0.48, 0.64, -0.6) * thickness;
                const std::string name = kind.substr(0, kind.find(';'));
                transform(*database, matrix);
                auto numbers = saved(*database, name);
                EXPECT_TRUE((normalOf(numbers) * numbers.at(39))
                                .isEqualTo(matrix * swept, KdGeTol().setEqualVector(1e-9)));
                transform(*database, matrix.inverse());
                numbers = saved(*database, name);
                EXPECT_TRUE((normalOf(numbers) * numbers.at(39)).isEqualTo(swept, kClose));
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
