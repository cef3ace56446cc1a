#include "orvex/coordinates.h"

#include "support/room_test.h"

#include <numbers>

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
    KdGePoint3d point(1, 2, 3), there;
    EXPECT_EQ(UCS2WCS(point, there), 5100);
    EXPECT_EQ(WCS2UCS(there, point), 5100);
    EXPECT_TRUE(there.isEqualTo({8, 21, 33}) && point.isEqualTo({1, 2, 3}));

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
    EXPECT_THAT(result, ElementsAre(7, 7, 7));
}

TEST_F(CoordinatesTest, EachArrayFunctionGoesItsOwnWay)
{
    useTurnedUcs();
    double normal[3] = {1, 0, 0};

    const auto uc2wc = [](auto* from, auto* to, auto*, bool disp) {
        return rx_uc2wc(from, to, disp);
    };
    const auto wc2uc = [](auto* from, auto* to, auto*, bool disp) {
        return rx_wc2uc(from, to, disp);
    };
    using Call = bool (*)(const double*, double*, double*, bool);
    const std::tuple<Call, std::vector<double>, std::vector<double>> cases[] = {
        {uc2wc, {8, 21, 33}, {-2, 1, 3}},
        {wc2uc, {-18, 9, -27}, {2, -1, 3}},
        // The entity system of the x axis has its own x along the world's y and its y along z.
        {rx_wc2ec, {2, 3, 1}, {2, 3, 1}},
        {rx_ec2wc, {3, 1, 2}, {3, 1, 2}},
        {rx_uc2ec, {21, 33, 8}, {1, 3, -2}},
        {rx_ec2uc, {-19, 7, -28}, {1, -3, 2}},
    };

    for (const auto& [call, point, vector] : cases) {
        for (const bool displacement : {false, true}) {
            double value[3] = {1, 2, 3};
            EXPECT_TRUE(call(value, value, normal, displacement));
            EXPECT_THAT(value, Pointwise(DoubleNear(1e-9), displacement ? vector : point));
        }
    }
    EXPECT_THAT(normal, ElementsAre(1, 0, 0));
}

TEST_F(CoordinatesTest, TheUcsMatrixMapsUserToWorldElseIsTheIdentity)
{
    KdGeMatrix3d matrix;
    useTurnedUcs();
    for (const std::size_t call : {1u, 2u, 3u}) {
        EXPECT_TRUE(rx_ucsmat(matrix));
        EXPECT_TRUE(matrix.isEqualTo(turnedUcs()));
        platform::failCall(call, platform::Fault::status);
        EXPECT_FALSE(rx_ucsmat(matrix));
        EXPECT_EQ(matrix, KdGeMatrix3d::kIdentity);
        platform::releaseCalls();
    }
}

TEST_F(CoordinatesTest, MatricesAreCopiedEntryByEntryDestinationFirst)
{
    const KdGeMatrix3d original = turnedUcs();
    KdGeMatrix3d copy = original;
    double rows[4][4];
    transKdGeMetrixToKdsMetrix(rows, copy);
    EXPECT_THAT(rows[1], ElementsAre(1, DoubleNear(0, 1e-15), 0, 20));
    copy = KdGeMatrix3d::kIdentity;
    transKdsMetrixToKdGeMetrix(copy, rows);
    EXPECT_EQ(copy, original);
    indent_matrix(rows);
    transKdsMetrixToKdGeMetrix(copy, rows);
    EXPECT_EQ(copy, KdGeMatrix3d::kIdentity);
}

} // namespace
