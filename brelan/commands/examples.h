// Examples of the commands, which their help shows first.
#pragma once

namespace brelan::tool {

inline constexpr const char* EXAMPLES_OF_RUN =
    R"(  brelan run pit.dat                         the deck's directory is the project
  brelan run pit.dat --kind coupled          for a solver of that kind
  brelan run decks/pit.dat --project quay    meshes are read from and written to quay/
  brelan run pit.dat --cut sound             elements along drawn lines as a solver takes them
  brelan run pit.dat --apart out/pit         Bmesh.dat, Group.Pos and the like go to out/pit/
  brelan run --json pit.dat | jq .mesh.sound
  brelan run pit.dat --data ~/brelan-c       with an existing data directory
)";

inline constexpr const char* EXAMPLES_OF_EDIT =
    R"(  brelan edit pit.dat                  the deck on the left, its mesh on the right
  brelan edit pit.dat --no-browser     only says at which address
  brelan edit pit.dat --watch          shows what another editor writes
  brelan edit pit.dat --cut sound      elements along drawn lines as a solver takes them
)";

inline constexpr const char* EXAMPLES_OF_WATCH =
    R"(  brelan watch pit.dat                 beside the editor in which it is written
  brelan watch -q pit.dat              only what has changed, without the first run
  brelan watch pit.dat --cut sound     elements along drawn lines as a solver takes them
)";

inline constexpr const char* EXAMPLES_OF_NEW =
    R"(  brelan new base-mesh > pit.dat     a base mesh, to be changed to your needs
  brelan new groups -o quay          quay/groups.dat: an excavation in stages
  brelan new edit-2 -o quay          quay/edit-2.dat and the mesh that it reads
  brelan new --list                  what there is
)";

inline constexpr const char* EXAMPLES_OF_CHECK =
    R"(  brelan check pit.dat                 every card with its fields, and what may be wrong
  brelan check -q pit.dat              only what may be wrong
  brelan check --dry-run pit.dat       and whether the mesh would be sound
  brelan check --cut sound pit.dat     what may be wrong when the sound cut is asked for
  brelan check --json pit.dat | jq '.warnings[].message'
)";

inline constexpr const char* EXAMPLES_OF_INFO =
    R"(  brelan info PitStages.Mes              what is in it, and whether it is sound
  brelan info --json *.Mes | jq '.[].sound'
  brelan info --list 50 PitStages.Mes    up to 50 places of each fault
  brelan info --nodes-on x=20 Pit.Mes    which nodes lie there; also --border and --elements-of 5
  brelan info --card --nodes-in 0 0 5 9 Pit.Mes   as the lines that a card's list takes
  brelan info --card --pairs Left.Mes Right.Mes --on x=40
)";

inline constexpr const char* EXAMPLES_OF_PLOT =
    R"(  brelan plot Pit.Mes -o pit.html               to be opened in a browser: zoom, pick, search
  brelan plot Pit.Mes -o pit.svg --deck pit.dat with the outlines that the deck draws
  brelan plot Pit.Mes -o wall.png --window 20 10 40 30 --numbers both
  brelan plot Pit.Mes -o pit.pdf --faults       rings round what is unsound
  brelan plot - -o - --to svg < Pit.Mes | gzip > pit.svgz
)";

inline constexpr const char* EXAMPLES_OF_DIFF =
    R"(  brelan diff Old.Mes New.Mes              what has changed under each number
  brelan diff --by-place Old.Mes New.Mes   the same mesh, numbered differently?
  brelan diff --tolerance 0.001 a.Mes b.vtu && echo same
)";

inline constexpr const char* EXAMPLES_OF_STUDY =
    R"(  brelan study new wall              wall.toml and its deck wall.dat, which run as they are
  brelan study wall.toml             runs what is missing, on all cores
  brelan study status wall.toml      how far it is
  brelan study report wall.toml      wall.study/report.html: table, pictures, plots
  brelan study csv wall.toml -o wall.csv
  brelan study wall.toml --engine slurm --chunk 500 --partition short --sbatch=--time=2:00:00
)";

inline constexpr const char* EXAMPLES_OF_CONVERT =
    R"(  brelan convert Pit.Mes Pit.vtu                 for ParaView
  brelan convert Pit.Mes Pit.msh                 for Gmsh, version 4.1
  brelan convert --to msh2 --bare Pit.Mes Pit.msh
                                                 version 2.2, materials as physical groups only
  brelan convert Pit.vtu Pit.Mes                 and back
  brelan convert --kind head drawn.msh Dam.Mes   a mesh that Gmsh made, for the head kind
  brelan convert --to vtu Pit.Mes - | gzip > Pit.vtu.gz
  brelan convert --deck pit.dat --stages Pit.Mes Pit.mdpa
                                                 for a geotechnical solver, a project file for each stage
  brelan convert --deck pit.dat --stages Pit.Mes Pit.vtu
                                                 for ParaView: Pit.pvd, a series of the steps
  brelan convert Pit.Mes Pit.inp --deck pit.dat --joints tie
                                                 for CalculiX, a step for each stage
  brelan convert Pit.Mes materials.csv           a table of materials to be filled in
  brelan convert Dam.Mes Dam.inp --materials materials.csv
)";

inline constexpr const char* EXAMPLES_OF_ALL =
    R"(  brelan new base-mesh > pit.dat     a commented starter deck
  brelan run pit.dat                 makes the mesh
  brelan edit pit.dat                shows it while the deck is written
  brelan plot Bmesh.dat -o pit.html  shows it, to be opened in a browser
  brelan info Bmesh.dat              counts, areas, quality, soundness
  brelan convert Bmesh.dat pit.vtu   carries it to ParaView (.vtu) or Gmsh (.msh)
)";

}  // namespace brelan::tool
