#include "orvex/coordinates.h"

#include "kd/ed.h"

#include <algorithm>

namespace {

constexpr short kWorld = 0;
constexpr short kUser = 1;

resbuf designator(short system)
{
    resbuf buffer{};
    buffer.restype = RTSHORT;
    buffer.resval.rint = system;
    return buffer;
}

/// The entity coordinate system of a normal.
resbuf designator(const double* normal)
{
    resbuf buffer{};
    buffer.restype = RT3DPOINT;
    std::copy_n(normal, 3, buffer.resval.rpoint);
    return buffer;
}

/// Translates a point or a vector, given as `Coordinates` of three doubles.
template <class Coordinates>
int translate(const Coordinates& in, short from, short to, int displacement, Coordinates& out)
{
    const kds_point given{in.x, in.y, in.z};
    kds_point result{};
    const resbuf fromSystem = designator(from);
    const resbuf toSystem = designator(to);
    const int status = kdedTrans(given, &fromSystem, &toSystem, displacement, result);
    out.set(result[0], result[1], result[2]);
    return status;
}

bool translate(const double* pt, const resbuf& from, const resbuf& to, bool disp, double* result)
{
    return kdedTrans(pt, &from, &to, disp, result) == RTNORM;
}

} // namespace

int UCS2WCS(const KdGePoint3d& in, KdGePoint3d& out)
{
    return translate(in, kUser, kWorld, 0, out);
}

int UCS2WCS(const KdGeVector3d& in, KdGeVector3d& out)
{
    return translate(in, kUser, kWorld, 1, out);
}

int WCS2UCS(const KdGePoint3d& in, KdGePoint3d& out)
{
    return translate(in, kWorld, kUser, 0, out);
}

int WCS2UCS(const KdGeVector3d& in, KdGeVector3d& out)
{
    return translate(in, kWorld, kUser, 1, out);
}

bool rx_wc2uc(const double* pt, double* result, bool disp)
{
    return translate(pt, designator(kWorld), designator(kUser), disp, result);
}

bool rx_uc2wc(const double* pt, double* result, bool disp)
{
    return translate(pt, designator(kUser), designator(kWorld), disp, result);
}

bool rx_wc2ec(const double* pt, double* result, double* normal, bool disp)
{
    return translate(pt, designator(kWorld), designator(normal), disp, result);
}

bool rx_ec2wc(const double* pt, double* result, double* normal, bool disp)
{
    return translate(pt, designator(normal), designator(kWorld), disp, result);
}

bool rx_uc2ec(const double* pt, double* result, double* normal, bool disp)
{
    return translate(pt, designator(kUser), designator(normal), disp, result);
}

bool rx_ec2uc(const double* pt, double* result, double* normal, bool disp)
{
    return translate(pt, designator(normal), designator(kUser), disp, result);
}

namespace {

/// Reads a point variable; one of another type is read all the same, with a message.
bool readPoint(const wchar_t* name, KdGePoint3d& point)
{
    resbuf value{};
    if (kdedGetVar(name, &value) != RTNORM)
        return false;
    if (value.restype != RT3DPOINT)
        kdutPrintf(L"%s not a point.\n", name);
    point.set(value.resval.rpoint[0], value.resval.rpoint[1], value.resval.rpoint[2]);
    return true;
}

} // namespace

bool rx_ucsmat(KdGeMatrix3d& mat)
{
    mat.setToIdentity();
    KdGePoint3d origin, xDirection, yDirection;
    if (!readPoint(L"UCSORG", origin) || !readPoint(L"UCSXDIR", xDirection) ||
        !readPoint(L"UCSYDIR", yDirection))
        return false;
    const KdGeVector3d xAxis = xDirection.asVector();
    const KdGeVector3d yAxis = yDirection.asVector();
    mat.setCoordSystem(origin, xAxis, yAxis, xAxis.crossProduct(yAxis));
    return true;
}

void transKdGeMetrixToKdsMetrix(double (*out)[4], KdGeMatrix3d& in)
{
    for (unsigned int row = 0; row < 4; ++row) {
        for (unsigned int column = 0; column < 4; ++column)
            out[row][column] = in(row, column);
    }
}

void transKdsMetrixToKdGeMetrix(KdGeMatrix3d& out, double (*in)[4])
{
    for (unsigned int row = 0; row < 4; ++row) {
        for (unsigned int column = 0; column < 4; ++column)
            out(row, column) = in[row][column];
    }
}

void indent_matrix(double (*m)[4])
{
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column)
            m[row][column] = row == column ? 1.0 : 0.0;
    }
}
