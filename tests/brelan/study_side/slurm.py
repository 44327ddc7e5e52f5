"""A cluster of one node on this machine: munged, slurmctld and slurmd of Debian's, started for a test and ended by it."""
import os
import pathlib
import shutil
import signal
import socket
import subprocess
import time

PROGRAMS = {name: shutil.which(name, path=os.environ.get("PATH", "") + ":/usr/sbin:/sbin")
            for name in ("munged", "slurmctld", "slurmd", "sbatch", "squeue", "scontrol", "scancel")}

CONFIGURATION = """ClusterName=study
SlurmctldHost={host}(127.0.0.1)
SlurmUser=root
SlurmdUser=root
AuthType=auth/munge
AuthInfo=socket={place}/munge.socket
CredType=cred/munge
SlurmctldPort={controller}
SlurmdPort={daemon}
StateSaveLocation={place}/state
SlurmdSpoolDir={place}/spool
SlurmctldPidFile={place}/slurmctld.pid
SlurmdPidFile={place}/slurmd.pid
SlurmctldLogFile={place}/slurmctld.log
SlurmdLogFile={place}/slurmd.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
JobAcctGatherType=jobacct_gather/none
AccountingStorageType=accounting_storage/none
MpiDefault=none
ReturnToService=2
MailProg=/bin/true
SchedulerParameters=sched_interval=1,sched_min_interval=1,batch_sched_delay=0
NodeName={host} NodeAddr=127.0.0.1 CPUs=2 State=UNKNOWN
PartitionName=short Nodes={host} Default=YES MaxTime=INFINITE State=UP
"""


def missing():
    """Why there can be no cluster; None where there can."""
    absent = [name for name, path in PROGRAMS.items() if path is None]
    if absent:
        return f"not installed: {', '.join(absent)}"
    return None if os.getuid() == 0 else "slurmd and munged are started as root"


def free_port():
    with socket.socket() as found:
        found.bind(("127.0.0.1", 0))
        return found.getsockname()[1]


class Cluster:
    def __init__(self, place):
        self.place = pathlib.Path(place)
        self.processes = []
        for name in ("state", "spool"):
            (self.place / name).mkdir(parents=True)
        key = self.place / "munge.key"
        key.write_bytes(os.urandom(1024))
        key.chmod(0o600)
        configuration = self.place / "slurm.conf"
        configuration.write_text(CONFIGURATION.format(host=socket.gethostname().split(".")[0], place=self.place,
                                                      controller=free_port(), daemon=free_port()))
        self.environment = {"SLURM_CONF": str(configuration),
                            "PATH": os.environ["PATH"] + ":/usr/sbin:/sbin"}
        try:
            self.start("munged", "--foreground", "--force", f"--key-file={key}", f"--socket={self.place}/munge.socket",
                       f"--pid-file={self.place}/munged.pid", f"--log-file={self.place}/munged.log",
                       f"--seed-file={self.place}/munged.seed", "--num-threads=1")
            self.wait(lambda: (self.place / "munge.socket").exists())
            self.start("slurmctld", "-D", "-f", configuration)
            self.start("slurmd", "-D", "-f", configuration)
            self.wait(lambda: "idle" in self.said("sinfo", "-h", "-o", "%t"))
        except BaseException:
            self.close()
            raise

    def start(self, name, *arguments):
        log = open(self.place / (name + ".out"), "wb")
        self.processes.append(subprocess.Popen([PROGRAMS[name], *map(str, arguments)], stdout=log, stderr=log,
                                               stdin=subprocess.DEVNULL, env=dict(os.environ, **self.environment)))
        log.close()

    def said(self, *command):
        return subprocess.run(command, capture_output=True, text=True, env=dict(os.environ, **self.environment)).stdout

    def wait(self, condition, seconds=20):
        deadline = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > deadline:
                raise TimeoutError("the cluster does not start: " + "\n".join(
                    path.read_text(errors="replace")[-1500:] for path in sorted(self.place.glob("*.out"))))
            time.sleep(0.05)

    def close(self):
        for process in reversed(self.processes):
            process.send_signal(signal.SIGTERM)
        for process in reversed(self.processes):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
