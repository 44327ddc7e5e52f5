"""A study by Slurm: daemons of Debian's on this machine, for the time of the test."""

import slurm
from study_case import StudyCase, main


class BySlurm(StudyCase):
    def test_a_study_runs_in_an_array_of_tasks_and_is_followed_when_it_was_left(self):
        if why := slurm.missing():
            self.skipTest(why)
        cluster = slurm.Cluster(self.root / "cluster")
        self.addCleanup(cluster.close)
        self.write_study("width = { from = 4, to = 15, step = 1 }\nheight = 3")
        to_slurm = ("s.toml", "--engine", "slurm", "--chunk", "6", "--partition", "short", "--sbatch=--time=5")
        # Killed as soon as the job is submitted: the job goes on, and the next invocation doubles nothing.
        left = self.start(*to_slurm, **cluster.environment)
        self.assertIn("12 cases in 2 tasks", left.stderr.readline())
        left.kill()
        left.communicate()
        out, err = self.study(*to_slurm, **cluster.environment)
        self.assertIn("12 of 12 cases, 12 finished", out)
        self.assertNotIn("tasks", err)
        self.assertEqual([row[0] for row in self.rows('"v elements"')], [3 * width for width in range(4, 16)])
        self.write_study("width = 5\nheight = 4")
        _, err = self.study(*to_slurm[:5], "--partition", "nowhere", status=2, **cluster.environment)
        self.assertIn("sbatch: ", err)


class WithoutSlurm(StudyCase):
    def test_a_machine_without_slurm_is_told(self):
        self.write_study("width = 3\nheight = 2")
        _, err = self.study("s.toml", "--engine", "slurm", status=2, PATH="/nowhere")
        self.assertEqual(err, "brelan: sbatch: sbatch is not there\n")


if __name__ == "__main__":
    main()
