// Volume mesh around a body for external aerodynamics. Frame of the solver: flow along x, z up;
// lengths in metres. The application fills the names in double braces.

lcMin = {{LC_MIN}};
lcMax = {{LC_MAX}};

// What becomes of the body's facets. The application, which has measured them, says:
//   > 0  keep them as they are; the number is their typical edge
//     0  make new ones; only for closed surfaces whose facets agree on the outside, since the
//        classification below never ends on some others
//   < 0  give up: needles on a surface that cannot be remeshed hold the mesher up for ever
road = {{SURFACE_ROAD}};

If (road < 0)
  Error("The surface is not closed or folds over itself, and has facets too thin to mesh around");
  Exit;
EndIf

Merge "{{STL_FILENAME}}";
BoundingBox;
bodyX0 = General.MinX; bodyX1 = General.MaxX;
bodyY0 = General.MinY; bodyY1 = General.MaxY;
bodyZ0 = General.MinZ; bodyZ1 = General.MaxZ;

// Size on the body: bodies under a millimetre have lcMin above lcMax.
size = (lcMin < lcMax) ? lcMin : lcMax;
Mesh.MeshSizeMin = size;
If (road == 0)
  // Patches end where facets meet at more than 40 degrees; each is then meshed anew.
  ClassifySurfaces{40 * Pi / 180, 1, 1, Pi};
  CreateGeometry;
Else
  size = road;
  Mesh.MeshSizeMin = 0;
EndIf
body() = Surface{:};
bodyCurves() = Curve{:};

// The far-field box. Tags are taken after the body's, so that they never meet.
x0 = {{XMIN}}; x1 = {{XMAX}};
y0 = {{YMIN}}; y1 = {{YMAX}};
z0 = {{ZMIN}}; z1 = {{ZMAX}};
p = newp;
Point(p) = {x0, y0, z0};
Point(p + 1) = {x1, y0, z0};
Point(p + 2) = {x1, y1, z0};
Point(p + 3) = {x0, y1, z0};
Point(p + 4) = {x0, y0, z1};
Point(p + 5) = {x1, y0, z1};
Point(p + 6) = {x1, y1, z1};
Point(p + 7) = {x0, y1, z1};
c = newl;
For i In {0 : 3}
  Line(c + i) = {p + i, p + (i + 1) % 4};
  Line(c + 4 + i) = {p + 4 + i, p + 4 + (i + 1) % 4};
  Line(c + 8 + i) = {p + i, p + 4 + i};
EndFor
loop = newll;
Curve Loop(loop) = {c : c + 3};
Curve Loop(loop + 1) = {c + 4 : c + 7};
For i In {0 : 3}
  Curve Loop(loop + 2 + i) = {c + i, c + 8 + (i + 1) % 4, -(c + 4 + i), -(c + 8 + i)};
EndFor
s = news;
For i In {0 : 5}
  Plane Surface(s + i) = {loop + i};
EndFor
box() = {s : s + 5};

shell = newsl;
Surface Loop(shell) = box();
Surface Loop(shell + 1) = body();
v = newv;
Volume(v) = {shell, shell + 1};

Physical Surface("body") = body();
Physical Surface("farfield") = box();
Physical Volume("fluid") = {v};

// Sizes: `size` on the body, 2.5 times that around it and in the near wake, and from there a
// growth of three tenths of the distance up to lcMax.
growth = 0.3;
reach = (lcMax - size) / growth;

Field[1] = Distance;
Field[1].SurfacesList = {body()};
Field[2] = Threshold;
Field[2].InField = 1;
Field[2].SizeMin = size;
Field[2].SizeMax = lcMax;
Field[2].DistMin = size;
Field[2].DistMax = size + reach;

length = bodyX1 - bodyX0;
Field[3] = Box;
Field[3].VIn = 2.5 * size;
Field[3].VOut = lcMax;
Field[3].XMin = bodyX0;
Field[3].XMax = bodyX1 + length;
Field[3].YMin = bodyY0 - size;
Field[3].YMax = bodyY1 + size;
Field[3].ZMin = bodyZ0 - size;
Field[3].ZMax = bodyZ1 + size;
Field[3].Thickness = reach;

// The distance is measured from the facets' corners, which may lie far apart on flat sides; there
// the size is set on the surface itself and spreads from it.
Field[4] = MathEval;
Field[4].F = Sprintf("%g", size);
Field[5] = Restrict;
Field[5].InField = 4;
Field[5].SurfacesList = {body()};
Field[5].CurvesList = {bodyCurves()};

Field[6] = Min;
Field[6].FieldsList = {2, 3, 5};
Background Field = 6;

Mesh.MeshSizeMax = lcMax;
Mesh.MeshSizeFromPoints = 0;
Mesh.MeshSizeFromCurvature = 0;
Mesh.MeshSizeExtendFromBoundary = 1;
Mesh.Algorithm = 6;
Mesh.Algorithm3D = 1;
Mesh.Optimize = 1;
Mesh.OptimizeThreshold = {{OPTIMIZE_BELOW}};
