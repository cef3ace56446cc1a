#include "orvex/coordinates.h"

#include "support/host_test.h"

#include <cstring>
#include <numbers>

using namespace tests;

namespace {

/// A user system at (10, 20, 30), turned by a right angle about z.
KdGeMatrix3d turnedUcs()
{
    return KdGeMatrix3d::translation({10, 20, 30}) *
           KdGeMatrix3d::rotation(std::numbers::pi / 2, KdGeVector3d::kZAxis);
}

void useTurnedUcs()
{
    ASSERT_EQ(kdedSetCurrentUCS(turnedUcs()), Kdapi::eOk);
}

class CoordinatesTest : public HostTest {};

TEST_F(CoordinatesTest, PointsMoveAndVectorsOnlyTurn)
{
    useTurnedUcs();
    KdGePoint3d point(1, 2, 3);
    EXPECT_EQ(UCS2WCS(point, point), 5100);
    EXPECT_TRUE(point.isEqualTo({8, 21, 33}));
    EXPECT_EQ(WCS2UCS(point, point), 5100);
    EXPECT_TRUE(point.isEqualTo({1, 2, 3}));

    KdGeVector3d vector(1, 2, 3);
    EXPECT_EQ(UCS2WCS(vector, vector), 5100);
    EXPECT_TRUE(vector.isEqualTo({-2, 1, 3}));
    EXPECT_EQ(WCS2UCS(vector, vector), 5100);
    EXPECT_TRUE(vector.isEqualTo({1, 2, 3}));
}

TEST_F(CoordinatesTest, AFailureIsToldByTheHostsStatusAndOverwritesTheResult)
{
    KdGePoint3d out(7, 7, 7);
    platform::failCall(1, platform::Fault::status);
    EXPECT_EQ(UCS2WCS(KdGePoint3d(1, 2, 3), out), RTERROR);
    EXPECT_EQ(out, KdGePoint3d::kOrigin);

    double result[3] = {7, 7, 7};
    platform::failCall(1, platform::Fault::status);
    EXPECT_FALSE(rx_wc2uc(result, result, false));
    EXPECT_THAT(result, ::testing::ElementsAre(7, 7, 7));
}

TEST_F(CoordinatesTest, ArraysTranslateThereAndBack)
{
    useTurnedUcs();
    using Flat = bool (*)(const double*, double*, bool);
    using Entity = bool (*)(const double*, double*, double*, bool);
    double normal[3] = {0.6, 0.0, 0.8};
    const auto expectRoundTrip = [&](auto there, auto back) {
        for (const bool displacement : {false, true}) {
            double value[3] = {1, 2, 3};
            EXPECT_TRUE(there(value, displacement) && back(value, displacement));
            EXPECT_THAT(value, ::testing::Pointwise(::testing::DoubleNear(1e-9),
                                                    std::vector<double>{1, 2, 3}));
        }
    };
    const auto flat = [](Flat call) {
        return [=](double* value, bool disp) { return call(value, value, disp); };
    };
    const auto entity = [&](Entity call) {
        return
            [&normal, call](double* value, bool disp) { return call(value, value, normal, disp); };
    };
    expectRoundTrip(flat(rx_uc2wc), flat(rx_wc2uc));
    expectRoundTrip(entity(rx_wc2ec), entity(rx_ec2wc));
    expectRoundTrip(entity(rx_uc2ec), entity(rx_ec2uc));
}

TEST_F(CoordinatesTest, EachArrayFunctionGoesItsOwnWay)
{
    useTurnedUcs();
    const double given[3] = {0, 0, 1};
    double normal[3] = {1, 0, 0};

    struct {
        bool (*call)(const double*, double*, double*, bool);
        KdGePoint3d expected;
    } const cases[] = {
        // The entity system of the x axis has its own x along the world's y and its y along z.
        {rx_wc2ec, {0, 1, 0}},
        {rx_ec2wc, {1, 0, 0}},
        {rx_uc2ec, {20, 31, 10}},
        {rx_ec2uc, {-20, 9, -30}},
    };

    for (const auto& [call, expected] : cases) {
        double result[3];
        EXPECT_TRUE(call(given, result, normal, false));
        EXPECT_TRUE(KdGePoint3d(result[0], result[1], result[2]).isEqualTo(expected))
            << result[0] << ' ' << result[1] << ' ' << result[2];
    }
    EXPECT_THAT(normal, ::testing::ElementsAre(1, 0, 0));
}

TEST_F(CoordinatesTest, TheUcsMatrixMapsUserToWorld)
{
    KdGeMatrix3d matrix = turnedUcs();
    EXPECT_TRUE(rx_ucsmat(matrix));
    EXPECT_EQ(matrix, KdGeMatrix3d::kIdentity);
    useTurnedUcs();
    EXPECT_TRUE(rx_ucsmat(matrix));
    EXPECT_TRUE(matrix.isEqualTo(turnedUcs()));
}

TEST_F(CoordinatesTest, TheUcsMatrixIsTheIdentityWhenAVariableCannotBeRead)
{
    useTurnedUcs();
    for (const std::size_t call : {1u, 2u, 3u}) {
        KdGeMatrix3d matrix = turnedUcs();
        platform::failCall(call, platform::Fault::status);
        EXPECT_FALSE(rx_ucsmat(matrix));
        EXPECT_TRUE(platform::faultDelivered());
        EXPECT_EQ(matrix, KdGeMatrix3d::kIdentity);
    }
    EXPECT_EQ(printed(), "");
}

TEST_F(CoordinatesTest, MatricesAreCopiedEntryByEntryDestinationFirst)
{
    double rows[4][4];
    for (int i = 0; i < 16; ++i)
        rows[i / 4][i % 4] = i + 1;
    KdGeMatrix3d matrix;
    transKdsMetrixToKdGeMetrix(matrix, rows);
    EXPECT_EQ(matrix(1, 2), 7.0);
    EXPECT_EQ(matrix(3, 0), 13.0);

    double copy[4][4];
    transKdGeMetrixToKdsMetrix(copy, matrix);
    EXPECT_EQ(std::memcmp(copy, rows, sizeof rows), 0);
    indent_matrix(copy);
    transKdsMetrixToKdGeMetrix(matrix, copy);
    EXPECT_EQ(matrix, KdGeMatrix3d::kIdentity);
}

} // namespace
